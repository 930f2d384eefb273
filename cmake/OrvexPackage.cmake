# Debian packages and the source tarball: scripts/package.sh makes them.
set(CPACK_PACKAGE_NAME orvex)
set(CPACK_PACKAGE_VENDOR orvex)
set(CPACK_PACKAGE_CONTACT orvex)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)

set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
if(ORVEX_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
  set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
endif()

set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src/orvex")
if(ORVEX_WITH_LIB3DS AND Lib3ds_PREFIX)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${Lib3ds_PREFIX}/lib")
endif()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborvex${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# Any driver does; this one needs no graphics device. GLUT is loaded for raster text alone.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libgl1-mesa-dri)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS libglut3.12)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}: the shared library
It loads models, builds scenes and draws them with OpenGL 2, 3.x and 4.x, in a window or with no
display at all.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME liborvex-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION "${PROJECT_DESCRIPTION}: headers for hosts
Headers, and what CMake and pkg-config want to know to build a host against the library.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME orvex-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${PROJECT_DESCRIPTION}: pictures from model files
orvex-render draws a model file to a picture, from the command line and with no display.")

set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME orvex-${PROJECT_VERSION})
string(REGEX REPLACE "([][+.*()^$?|\\\\])" "[\\\\1]" top "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
  "^${top}/[.]git/" "^${top}/[.]git$" "^${top}/build/" "^${top}/deps/" "^${top}/out/" "/__pycache__/")
include(CPack)
