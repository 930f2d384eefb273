# What goes to a prefix, in seven components: the library that a program runs on, the kit's and that for C, what
# a host is built with, in C++ and in C, the tools, and what people read; where they are built, two more with the
# viewer and the importer.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/orvex)

install(TARGETS orvex_r_osx EXPORT orvex
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS orvex_kit EXPORT orvex
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT kit NAMELINK_COMPONENT dev
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# For C: targets of their own, as hosts of the kit have no need of the library.
install(TARGETS orvex_c EXPORT orvex_c
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT c NAMELINK_COMPONENT c_dev
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT orvex_c NAMESPACE orvex:: DESTINATION ${package_dir}
  FILE orvex-c-targets.cmake COMPONENT c_dev)
install(FILES src/orvex_c/orvex.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvex_c COMPONENT c_dev)
# Where the kit looks for plugins.
get_property(formats GLOBAL PROPERTY ORVEX_FORMATS)
list(REMOVE_ITEM formats orvex_import)
install(TARGETS ${formats}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orvex/plugins COMPONENT kit)
# Apart from the kit, which needs no more libraries for what it reads itself.
if(TARGET orvex-import)
  install(TARGETS orvex_import
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orvex/plugins COMPONENT import)
  install(TARGETS orvex-import
    RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/orvex COMPONENT import)
endif()
install(EXPORT orvex NAMESPACE orvex:: DESTINATION ${package_dir}
  FILE orvex-targets.cmake COMPONENT dev)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT runtime)

get_property(headers GLOBAL PROPERTY ORVEX_PUBLIC_HEADERS)
get_property(kit_headers GLOBAL PROPERTY ORVEX_KIT_PUBLIC_HEADERS)
foreach(header IN LISTS headers kit_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES "src/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}"
    COMPONENT dev)
endforeach()
# Each over a toolkit, which a host of another one hasn't got: kit.h leaves them out.
foreach(toolkit glfw gtk4 qt6 sdl2 wayland x11)
  install(FILES "src/orvex_kit/windows/${toolkit}.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvex_kit/windows" COMPONENT dev)
endforeach()

# The kit has its letters in it. A host of the engine alone draws text from a sheet: this one is for a start.
set(font_dir ${CMAKE_INSTALL_DATADIR}/orvex/fonts)
foreach(suffix xml png txt)
  install(FILES "examples/data/dejavu_sans_24.${suffix}" DESTINATION ${font_dir} COMPONENT dev)
endforeach()

configure_package_config_file(cmake/orvex-config.cmake.in orvex-config.cmake
  INSTALL_DESTINATION ${package_dir} PATH_VARS font_dir)
configure_file(cmake/orvex-config-version.cmake.in orvex-config-version.cmake @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orvex-config.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/orvex-config-version.cmake"
  DESTINATION ${package_dir} COMPONENT dev)

# The files name their prefix by their own place, so that an installed tree can be moved.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir}"
           OUTPUT_VARIABLE prefix_from_pkgconfig)
foreach(file orvex.pc orvex-kit.pc)
  configure_file(cmake/${file}.in ${file} @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${file}" DESTINATION ${pkgconfig_dir} COMPONENT dev)
endforeach()
configure_file(cmake/orvex-c.pc.in orvex-c.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orvex-c.pc" DESTINATION ${pkgconfig_dir} COMPONENT c_dev)

# lib3ds goes beside the engine's library, with its licence, unless the system has it anyway.
if(ORVEX_WITH_LIB3DS AND Lib3ds_PREFIX)
  install(FILES "${Lib3ds_LIBRARY}" DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime)
  install(DIRECTORY "${Lib3ds_PREFIX}/share/doc/lib3ds" DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT runtime)
endif()

# The site, where the target `docs` has made it, and programs to begin with.
install(DIRECTORY "${PROJECT_BINARY_DIR}/docs/html" DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT doc OPTIONAL)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
  PATTERN __pycache__ EXCLUDE)
install(DIRECTORY docs/guide/code/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples/guide COMPONENT doc)
