# Copies the examples out, builds each as a project of its own against an installed prefix, and runs them
# among their data: each leaves a picture, or says what it found.
#
# Expects BUILD_DIR, EXAMPLES_DIR, WORK_DIR, GENERATOR and CXX_COMPILER.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
set(pictures "${WORK_DIR}/pictures")

# run(<command>): its output is in `output`.
macro(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${pictures}" COMMAND_ECHO STDOUT
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${result}\n${output}\n${errors}")
  endif()
endmacro()

function(expect_start file start)
  file(READ "${pictures}/${file}" found LIMIT 12 HEX)
  if(NOT found MATCHES "^${start}")
    message(FATAL_ERROR "${file} begins with ${found}")
  endif()
endfunction()

# --- Installed, copied out and moved, so that nothing is found in the tree

file(COPY "${EXAMPLES_DIR}/data/" DESTINATION "${pictures}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix")
file(RENAME "${WORK_DIR}/prefix" "${WORK_DIR}/moved")
file(GLOB examples RELATIVE "${EXAMPLES_DIR}" "${EXAMPLES_DIR}/[0-9]*")
set(projects "")
foreach(example IN LISTS examples)
  file(COPY "${EXAMPLES_DIR}/${example}" DESTINATION "${WORK_DIR}/copied")
  string(APPEND projects "add_subdirectory(${example})\n")
endforeach()

# --- One build of all: each looks for its compiler and its packages itself all the same

file(WRITE "${WORK_DIR}/copied/CMakeLists.txt"
  "cmake_minimum_required(VERSION 3.16)\nproject(examples CXX)\n${projects}")
run("${CMAKE_COMMAND}" -S "${WORK_DIR}/copied" -B "${WORK_DIR}/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${WORK_DIR}/moved"
  "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
  "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")

# --- Those without a picture: a window is looked at elsewhere, and so is a host that waits for texts

set(others 07_film 08_window 14_artifact_scan 15_remote_control 16_first_model 18_plugin)
set(drawn ${examples})
list(REMOVE_ITEM drawn ${others} 01_first_picture)
foreach(example IN LISTS drawn)
  string(REGEX REPLACE "^[0-9]+_" "" name "${example}")
  run("${WORK_DIR}/build/${example}/${name}")
  expect_start("${name}.jpg" ffd8ff)
  # A picture of the background alone is smaller by far.
  file(SIZE "${pictures}/${name}.jpg" size)
  if(size LESS 20000)
    message(FATAL_ERROR "${name}.jpg has ${size} bytes: it is empty")
  endif()
endforeach()
run("${WORK_DIR}/build/16_first_model/first_model" lighthouse.obj first_model.jpg)
expect_start(first_model.jpg ffd8ff)
run("${WORK_DIR}/build/07_film/film")
expect_start(film.y4m 595556344d50454732) # YUV4MPEG2
run("${WORK_DIR}/build/14_artifact_scan/artifact_scan" gl3 2 5)
if(NOT output STREQUAL "5 artifacts in 3 frames, at most 5 in one\n")
  message(FATAL_ERROR "artifact_scan: ${output}")
endif()
set(plugins "${WORK_DIR}/build/18_plugin")
run("${plugins}/plugin_host" "${plugins}/soup_loader.so" "${plugins}/checker_codec.so"
  "${WORK_DIR}/copied/18_plugin/data/")

# --- The first one draws the README's picture, as the tool does

run("${WORK_DIR}/build/01_first_picture/first_picture")
run("${WORK_DIR}/moved/bin/orvex-render" --quiet --output tool.jpg lighthouse.obj)
run("${CMAKE_COMMAND}" -E compare_files lighthouse.jpg tool.jpg)
