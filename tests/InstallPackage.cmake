# The library as another project uses it: installed into a fresh prefix (cmake --install), then the
# example in examples/consumer built against it through find_package, through pkg-config, and with
# the source added by add_subdirectory; each program must print the RHS's properties, from
# coordinates and (but for add_subdirectory's build) from examples/rhs200x100x8.dxf.
# cmake -DBUILD=<build> -DSOURCE=<checkout> -DWORK=<scratch folder> -DCXX=<compiler> -P InstallPackage.cmake
set(expected "area 45.44 cm2, Ix 757.854 cm4, Iy 2306.01 cm4\n")
set(expected_drawing "LWPOLYLINE handle A0 on layer RHS200 with 1 hole: area 44.7533 cm2, Ix 2233.6 cm4, Iy 739.009 cm4\n")
set(prefix ${WORK}/prefix)
file(REMOVE_RECURSE ${WORK})

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${out}\n${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

# check_program(WHAT FOLDER [DRAWING]): the program's output, and the drawing program's when asked.
function(check_program what folder)
  run("${what}: the program" ${folder}/section_of_rhs)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "${what}: printed '${output}', expected '${expected}'")
  endif()
  if(ARGN)
    run("${what}: the drawing program" ${folder}/drawing_sections ${SOURCE}/examples/rhs200x100x8.dxf)
    if(NOT output STREQUAL expected_drawing)
      message(FATAL_ERROR "${what}: printed '${output}', expected '${expected_drawing}'")
    endif()
  endif()
  message(STATUS "${what}: ${output}")
endfunction()

run("install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})

run("find_package: configure" ${CMAKE_COMMAND} -S ${SOURCE}/examples/consumer -B ${WORK}/found -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Release)
run("find_package: build" ${CMAKE_COMMAND} --build ${WORK}/found --parallel 2)
check_program("find_package" ${WORK}/found DRAWING)

run("pkg-config" ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/lib/pkgconfig:${prefix}/lib64/pkgconfig
    pkg-config --cflags --libs tessary-geometry-pro)
separate_arguments(flags UNIX_COMMAND "${output}")
file(MAKE_DIRECTORY ${WORK}/pkg-config)
foreach(program section_of_rhs drawing_sections)
  run("pkg-config: build" ${CXX} ${SOURCE}/examples/consumer/${program}.cpp ${flags} -o ${WORK}/pkg-config/${program})
endforeach()
check_program("pkg-config" ${WORK}/pkg-config DRAWING)

# The library's sources are compiled again here, for one program and unoptimised: what is tested is
# how the project is added to another (configuring already resolves both programs' targets).
run("add_subdirectory: configure" ${CMAKE_COMMAND} -S ${SOURCE}/examples/consumer -B ${WORK}/added -DTGP_SOURCE_DIR=${SOURCE}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0)
if(EXISTS ${WORK}/added/tessary-geometry-pro/tests OR EXISTS ${WORK}/added/tessary-geometry-pro/bench)
  message(FATAL_ERROR "add_subdirectory: the library's tests or benchmarks were configured for another project")
endif()
run("add_subdirectory: build" ${CMAKE_COMMAND} --build ${WORK}/added --parallel 2 --target section_of_rhs)
check_program("add_subdirectory" ${WORK}/added)
