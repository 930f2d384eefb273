# One interface target carries what every translation unit of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")

add_library(orvex_options INTERFACE)

# The arithmetic of the math types is promised to the last bit: products and sums are rounded one
# by one, in the order they are written. Contraction into fused operations would break that.
target_compile_options(orvex_options INTERFACE -ffp-contract=off -fno-fast-math -fno-math-errno)

target_compile_options(orvex_options INTERFACE
  -Wall -Wextra -Wpedantic -Wold-style-cast -Wmissing-declarations -Wdouble-promotion
  -Wnon-virtual-dtor -Wshadow=local -Wformat=2 -Wundef -Wvla
  $<$<BOOL:${ORVEX_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(orvex_options INTERFACE -Wno-unknown-warning-option)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in "text" + std::string where there are none (GCC bug 105329).
  target_compile_options(orvex_options INTERFACE -Wno-restrict)
endif()

if(ORVEX_SANITIZE)
  target_compile_options(orvex_options INTERFACE
    -fsanitize=${ORVEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvex_options INTERFACE -fsanitize=${ORVEX_SANITIZE})
endif()
