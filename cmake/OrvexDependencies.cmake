# A dependency that is missing stops the configuration with the command that repairs it.

function(orvex_require found what)
  if(NOT ${found})
    message(FATAL_ERROR "orvex needs ${what}. On Debian, scripts/setup.sh installs it.")
  endif()
endfunction()

set(OpenGL_GL_PREFERENCE GLVND)
find_package(OpenGL QUIET COMPONENTS OpenGL EGL)
orvex_require(OpenGL_FOUND "OpenGL and EGL (libopengl-dev, libegl-dev, libgl-dev)")

find_package(Threads QUIET)
orvex_require(Threads_FOUND "a threads library")

find_path(ORVEX_STB_INCLUDE_DIR stb_image.h PATH_SUFFIXES stb)
orvex_require(ORVEX_STB_INCLUDE_DIR "stb_image (libstb-dev)")

# By its path: a target of its package would have to be found by every host as well.
find_path(ORVEX_TINYXML2_INCLUDE_DIR tinyxml2.h)
orvex_require(ORVEX_TINYXML2_INCLUDE_DIR "TinyXML-2's header (libtinyxml2-dev)")
find_library(ORVEX_TINYXML2_LIBRARY tinyxml2)
orvex_require(ORVEX_TINYXML2_LIBRARY "TinyXML-2 (libtinyxml2-dev)")

if(ORVEX_WITH_LIB3DS)
  find_package(Lib3ds QUIET)
  if(NOT Lib3ds_FOUND)
    message(FATAL_ERROR "orvex needs lib3ds 2.x for 3DS models. On Debian, scripts/get_lib3ds.sh builds it; "
      "-DORVEX_WITH_LIB3DS=OFF leaves the 3DS loader out.")
  endif()
endif()
