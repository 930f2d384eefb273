# Installs the engine into a prefix of its own, moves it, builds the host against it and runs it
# there: by CMake's package, and by pkg-config.
#
# Expects BUILD_DIR, HOST_DIR, WORK_DIR, GENERATOR, CXX_COMPILER and CXX_FLAGS.

cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${result}")
  endif()
endfunction()

function(expect_shot_of host)
  file(REMOVE "${WORK_DIR}/shot.jpg")
  run(${host} "${HOST_DIR}/" "${WORK_DIR}/shot.jpg")
  file(READ "${WORK_DIR}/shot.jpg" start LIMIT 3 HEX)
  if(NOT start STREQUAL "ffd8ff")
    message(FATAL_ERROR "shot.jpg is no JPEG file: ${start}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/prefix")
file(RENAME "${WORK_DIR}/prefix" "${WORK_DIR}/moved")
set(prefix "${WORK_DIR}/moved")

# --- find_package

run("${CMAKE_COMMAND}" -S "${HOST_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
  "-DCMAKE_PREFIX_PATH=${prefix}"
  "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
  "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
expect_shot_of("${WORK_DIR}/build/host")

# --- The versions that a host may ask for: those of the same minor number up to this one, and each
# --- range that holds this one

file(WRITE "${WORK_DIR}/asks/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(asks LANGUAGES NONE)
find_package(orvex ${WANTED} CONFIG QUIET)
file(WRITE "${CMAKE_BINARY_DIR}/answer" "${orvex_CONSIDERED_VERSIONS} ${orvex_FOUND}")
]])
function(expect_version wanted answer)
  execute_process(COMMAND "${CMAKE_COMMAND}" --fresh -S "${WORK_DIR}/asks" -B "${WORK_DIR}/asks/build"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DWANTED=${wanted}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(READ "${WORK_DIR}/asks/build/answer" given)
  if(NOT given STREQUAL "0.9.0 ${answer}")
    message(FATAL_ERROR "version ${wanted}: '${given}', not '0.9.0 ${answer}'")
  endif()
endfunction()
expect_version(0.9 1)
expect_version(0.9.0 1)
expect_version("0.9.0;EXACT" 1)
expect_version(0.9.1 0)
expect_version(0.8 0)
expect_version(0.10 0)
expect_version(1.0 0)
expect_version(0.9.0...0.10 1)
expect_version(0.8...0.9 1)
expect_version(0.8...1 1)
expect_version(0.9...<0.10 1)
expect_version(0.9.0...<0.9.1 1)
expect_version(0.8...<0.9.0 0)
expect_version(0.9.1...0.10 0)
expect_version(0.1...0.8.9 0)
# And the components.
expect_version("0.9;COMPONENTS;orvex" 1)
expect_version("0.9;COMPONENTS;orvex;kit;c" 1)
expect_version("0.9;COMPONENTS;wings" 0)

# --- The headers lie below one folder, and nowhere else

file(GLOB top RELATIVE "${prefix}/include" "${prefix}/include/*")
list(SORT top)
if(NOT top STREQUAL "orvex;orvex_c;orvex_kit")
  message(FATAL_ERROR "include/ holds ${top}, not orvex, orvex_c and orvex_kit alone")
endif()
file(GLOB_RECURSE strangers "${prefix}/include/*")
list(FILTER strangers INCLUDE REGEX "/private/")
if(strangers)
  message(FATAL_ERROR "private headers are installed: ${strangers}")
endif()

# --- pkg-config

file(GLOB_RECURSE pc_file "${prefix}/*/orvex.pc")
cmake_path(GET pc_file PARENT_PATH pc_dir)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
set(ENV{PKG_CONFIG_ALLOW_SYSTEM_LIBS} 1)
execute_process(COMMAND pkg-config --cflags --libs "orvex >= 0.9" OUTPUT_VARIABLE flags
  RESULT_VARIABLE result OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0 OR NOT flags MATCHES "-lorvex_r_osx")
  message(FATAL_ERROR "pkg-config gives '${flags}'")
endif()
execute_process(COMMAND pkg-config --libs "orvex-kit >= 0.9" OUTPUT_VARIABLE kit_flags RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT kit_flags MATCHES "-lorvex_kit.*-lorvex_r_osx")
  message(FATAL_ERROR "pkg-config gives '${kit_flags}' for the kit")
endif()
execute_process(COMMAND pkg-config --cflags --libs "orvex-c >= 0.9" OUTPUT_VARIABLE c_flags
  RESULT_VARIABLE result OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0 OR NOT c_flags MATCHES "-I.* -lorvex_c" OR c_flags MATCHES "-lorvex_kit")
  message(FATAL_ERROR "pkg-config gives '${c_flags}' for C")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(own_flags UNIX_COMMAND "${CXX_FLAGS}")
run("${CXX_COMPILER}" -std=c++17 -Wall -Wextra -Wpedantic -Werror ${own_flags} "-I${HOST_DIR}/own"
  "${HOST_DIR}/main.cpp" -o "${WORK_DIR}/host" ${flags})
cmake_path(GET pc_dir PARENT_PATH libdir)
set(ENV{LD_LIBRARY_PATH} "${libdir}")
expect_shot_of("${WORK_DIR}/host")
