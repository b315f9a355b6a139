# tgp_module(NAME): the library tgp_NAME of the folder NAME as a module of the package: its headers
# found as "NAME/Header.h" from the source tree and from an installed prefix, the alias
# TessaryGeometryPro::NAME, and its headers and library installed with the package.
function(tgp_module name)
  set(target tgp_${name})
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tessary-geometry-pro>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  add_library(TessaryGeometryPro::${name} ALIAS ${target})
  set_property(GLOBAL APPEND PROPERTY TGP_INSTALLED_MODULES ${target})
  install(TARGETS ${target} EXPORT TessaryGeometryProTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tessary-geometry-pro/${name}
    FILES_MATCHING PATTERN "*.h" PATTERN "win32" EXCLUDE)
endfunction()
