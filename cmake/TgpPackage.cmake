# The installed package: the modules' libraries and headers (tgp_module), one imported target per
# module and TessaryGeometryPro::all for every one, a CMake package for find_package and a
# pkg-config file.
include(CMakePackageConfigHelpers)

get_property(tgp_modules GLOBAL PROPERTY TGP_INSTALLED_MODULES)
add_library(tgp_all INTERFACE)
target_link_libraries(tgp_all INTERFACE ${tgp_modules})
set_target_properties(tgp_all PROPERTIES EXPORT_NAME all)
add_library(TessaryGeometryPro::all ALIAS tgp_all)
install(TARGETS tgp_all EXPORT TessaryGeometryProTargets)

set(tgp_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TessaryGeometryPro)
install(EXPORT TessaryGeometryProTargets NAMESPACE TessaryGeometryPro:: DESTINATION ${tgp_cmake_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TessaryGeometryProConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TessaryGeometryProConfig.cmake INSTALL_DESTINATION ${tgp_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TessaryGeometryProConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TessaryGeometryProConfig.cmake ${PROJECT_BINARY_DIR}/TessaryGeometryProConfigVersion.cmake
  DESTINATION ${tgp_cmake_dir})

# pkg-config: static libraries, the later ones used by the earlier.
set(tgp_pc_libs "")
foreach(module IN ITEMS ui drawings profiles geometry units core)
  if(TARGET tgp_${module})
    string(APPEND tgp_pc_libs " -ltgp_${module}")
  endif()
endforeach()
# The prefix relative to the file itself, so that the package works wherever it is installed.
set(tgp_pc_prefix "\${pcfiledir}")
string(REPLACE "/" ";" tgp_pc_levels "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
foreach(level IN LISTS tgp_pc_levels)
  string(APPEND tgp_pc_prefix "/..")
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/tessary-geometry-pro.pc.in ${PROJECT_BINARY_DIR}/tessary-geometry-pro.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tessary-geometry-pro.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
