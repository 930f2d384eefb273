#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
#
#   scripts/test.sh          format, release tests, Clang's warnings and names, the sanitizers' tests
#   scripts/test.sh quick    format and release tests alone
#   scripts/test.sh all      as without a word, and what takes longer: clang-tidy over everything, a build
#                            without lib3ds, GL tests with parts of the driver masked, the tests under load
#
# More words go to ctest: scripts/test.sh quick -R math. What a failing test printed, and the pictures it
# left, are kept in build/<preset>/test-output.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=usual
case "${1:-}" in
  quick | all) mode=$1; shift ;;
esac

scripts/setup.sh test

step() { echo "== $1 ($(date +%T))"; }

# build PRESET [CMake's options]
build() {
  local preset=$1; shift
  cmake --preset "$preset" "$@" >/dev/null
  cmake --build --preset "$preset"
}

# run_tests PRESET [ctest's options]: a failing test's output is printed, and kept.
run_tests() {
  local preset=$1; shift
  local output="build/$preset/test-output"
  mkdir -p "$output"
  if ! ctest --preset "$preset" --output-log "$output/ctest.log" "$@"; then
    echo "kept in $output:"; ls "$output"
    return 1
  fi
}

step format
scripts/format.sh --check

step release
build release
run_tests release "$@"
[ "$mode" = quick ] && exit 0

step 'names, and what Clang warns of, conversions of sign included'
cmake --preset clang >/dev/null
scripts/check_clang.py build/clang

step 'address and undefined behaviour sanitizers'
build asan
run_tests asan "$@"

step 'thread sanitizer: what uses threads'
cmake --preset tsan >/dev/null
threads=(base_test plugin_test network_test tcp_load_test render_window_opengl_test)
cmake --build --preset tsan --target "${threads[@]}"
run_tests tsan -R "^($(IFS='|'; echo "${threads[*]}"))\$"

[ "$mode" = all ] || exit 0

step 'clang-tidy over everything'
scripts/tidy.sh build/release

step 'without lib3ds'
build release-no-3ds
run_tests release-no-3ds "$@"

step 'GL tests with parts of the driver masked'
scripts/masks.sh build/release

step 'the release tests under load'
scripts/under_load.sh build/release "$@"
