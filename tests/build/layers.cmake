# Reads the includes of every source and refuses those that point the wrong way.
#
#   math, kernel's foundations        know nobody
#   network                           kernel's foundations
#   renderer (the contract)           math, kernel
#   scene, gpu, geometry, assets      the contract and each other
#   diagnostics, overlays             all of these
#   renderer/opengl                   the contract and the records, never a front end's class
#   kernel.*, core.*, aux.*           put everything together
#   renderer/window.cpp               ties scene, camera and viewport together, in its source alone
#
# GL headers belong to renderer/opengl, EGL and X11 headers to renderer/opengl/linux.

set(front "math|kernel|renderer|scene|gpu|geometry|assets")
set(allowed_math "math")
set(allowed_kernel "kernel")
set(allowed_network "kernel|network")
set(allowed_renderer "math|kernel|renderer")
set(allowed_scene "${front}")
set(allowed_gpu "${front}")
set(allowed_geometry "${front}")
set(allowed_assets "${front}")
set(allowed_diagnostics "${front}|diagnostics")
set(allowed_overlays "${front}|overlays")
set(allowed_opengl "${front}")
set(facade "kernel/(kernel|core|aux)[a-z_]*\\.(h|cpp)$")

set(mistakes "")
file(GLOB_RECURSE files RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/*.h" "${SOURCE_DIR}/*.cpp")
foreach(file IN LISTS files)
  file(STRINGS "${SOURCE_DIR}/${file}" includes REGEX "^#[ ]*include")
  string(REGEX MATCH "^[a-z]+" folder "${file}")
  set(opengl FALSE)
  if(file MATCHES "^renderer/opengl/")
    set(opengl TRUE)
    set(folder opengl)
  endif()
  foreach(line IN LISTS includes)
    if(line MATCHES "<(GL|EGL|X11)/")
      set(library "${CMAKE_MATCH_1}")
      if(library STREQUAL "GL" AND NOT opengl)
        list(APPEND mistakes "${file}: ${line} (GL headers belong to renderer/opengl)")
      elseif(NOT library STREQUAL "GL" AND NOT file MATCHES "^renderer/opengl/linux/")
        list(APPEND mistakes "${file}: ${line} (window-system headers belong to renderer/opengl/linux)")
      endif()
    elseif(line MATCHES "\"([a-z0-9_]+)/([a-z0-9_/.]+)\"")
      set(target "${CMAKE_MATCH_1}")
      set(path "${CMAKE_MATCH_1}/${CMAKE_MATCH_2}")
      if(NOT EXISTS "${SOURCE_DIR}/${path}")
        list(APPEND mistakes "${file}: ${line} (no such header; write the path from src)")
      elseif(file MATCHES "${facade}" OR NOT file MATCHES "/")
        continue()
      elseif(path MATCHES "^renderer/opengl/" AND NOT opengl)
        list(APPEND mistakes "${file}: ${line} (front ends never know the back end)")
      elseif(path MATCHES "${facade}")
        list(APPEND mistakes "${file}: ${line} (the facade is the host's door)")
      elseif(file STREQUAL "renderer/window.cpp" AND target STREQUAL "scene")
        continue()
      elseif(DEFINED allowed_${folder} AND NOT target MATCHES "^(${allowed_${folder}})$")
        list(APPEND mistakes "${file}: ${line} (${folder} does not stand on ${target})")
      endif()
    endif()
  endforeach()
endforeach()

if(mistakes)
  list(JOIN mistakes "\n  " text)
  message(FATAL_ERROR "Includes that point the wrong way:\n  ${text}")
endif()
