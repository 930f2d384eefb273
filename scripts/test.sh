#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: release, then under the address and
# undefined behaviour sanitizers. Arguments go to ctest: scripts/test.sh -R math
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh test
scripts/format.sh --check

for preset in release asan; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset" "$@"
done
