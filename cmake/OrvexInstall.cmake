include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS orvex_r_osx EXPORT orvex
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_INCLUDEDIR}/orvex)
install(EXPORT orvex NAMESPACE orvex:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/orvex
  FILE orvex-targets.cmake)

get_property(headers GLOBAL PROPERTY ORVEX_PUBLIC_HEADERS)
foreach(header IN LISTS headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES "src/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvex/${folder}")
endforeach()

configure_package_config_file(cmake/orvex-config.cmake.in orvex-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/orvex)
write_basic_package_version_file(orvex-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orvex-config.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/orvex-config-version.cmake"
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/orvex)

configure_file(cmake/orvex.pc.in orvex.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orvex.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
