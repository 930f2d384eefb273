# How the folders contribute to the targets: each names its sources and public headers, each test
# folder its test programs.

# orvex_add(PUBLIC <headers> SOURCES <sources and private headers>)
#
# Adds a folder's files to the library that it lies in, src/<library>. Public headers are installed,
# compiled alone by the header check, and listed in the umbrella header.
function(orvex_add)
  cmake_parse_arguments(arg "" "" "PUBLIC;SOURCES" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY "${PROJECT_SOURCE_DIR}/src"
             OUTPUT_VARIABLE folder)
  string(REGEX MATCH "^[^/]+" library "${folder}")
  string(TOUPPER "${library}_PUBLIC_HEADERS" headers)
  foreach(file IN LISTS arg_PUBLIC arg_SOURCES)
    target_sources(${library}_objects PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  endforeach()
  foreach(header IN LISTS arg_PUBLIC)
    cmake_path(APPEND folder "${header}" OUTPUT_VARIABLE path)
    cmake_path(NORMAL_PATH path)
    set_property(GLOBAL APPEND PROPERTY ${headers} "${path}")
  endforeach()
endfunction()

# How tests are compiled. The engine is what is optimised and tested. A test's own body takes a compiler that
# optimises it as long as all the rest, three times as long under the sanitizers; and it is the engine that is
# watched for undefined behaviour, which takes another third.
# It is linked last: an option that turns a sanitizer on has the last word over one before it.
add_library(orvex_test_options INTERFACE)
target_compile_options(orvex_test_options INTERFACE -O0)
if(ORVEX_SANITIZE)
  target_compile_options(orvex_test_options INTERFACE -fno-sanitize=undefined)
endif()
# Behind a precompiled header GCC takes the standard library's strings for code of ours, and is wrong.
target_compile_options(orvex_test_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow)

# orvex_test(<name> [SHARED] [LABELS <labels>] [LIBRARIES <more>] [ENVIRONMENT <A=b>] SOURCES <files>)
#
# A test program. It sees the engine's private parts through the archive of the library's objects;
# with SHARED it links the shared library as a host does, and only exported names are in reach.
function(orvex_test name)
  cmake_parse_arguments(arg "SHARED" "" "LABELS;LIBRARIES;ENVIRONMENT;SOURCES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  set(engine orvex_archive)
  if(arg_SHARED)
    set(engine orvex_r_osx)
  endif()
  target_link_libraries(${name} PRIVATE
    orvex_options orvex_test_support ${engine} ${arg_LIBRARIES} orvex_test_options)
  target_precompile_headers(${name} REUSE_FROM orvex_test_header)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    LABELS "${arg_LABELS}"
    TIMEOUT 600
    ENVIRONMENT "${ORVEX_TEST_ENVIRONMENT};${arg_ENVIRONMENT}")
endfunction()

# orvex_bench(<name> [LIBRARIES <more>] SOURCES <files>): a Google Benchmark program.
function(orvex_bench name)
  cmake_parse_arguments(arg "" "" "LIBRARIES;SOURCES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE orvex_options orvex_archive benchmark::benchmark
                        ${arg_LIBRARIES})
endfunction()

# orvex_fuzz(<name> [LIBRARIES <more>] SOURCES <files>)
#
# A fuzz target. With ORVEX_BUILD_FUZZ it is a libFuzzer program, by clang; with the tests it is a test
# that plays its corpus, fuzz/corpus/<name>, by any compiler.
function(orvex_fuzz name)
  cmake_parse_arguments(arg "" "" "LIBRARIES;SOURCES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE orvex_options orvex_archive ${arg_LIBRARIES})
  if(ORVEX_BUILD_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    return()
  endif()
  target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/support/replay.cpp")
  add_test(NAME ${name} COMMAND ${name} "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT "${ORVEX_TEST_ENVIRONMENT}")
endfunction()
