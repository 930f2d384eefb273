#!/usr/bin/env bash
# Draws golden pictures anew, for chosen tests: scripts/golden.sh -R mesh_picture
# The arguments go to ctest. Look at the pictures that git shows as changed before committing them.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset release >/dev/null
cmake --build --preset release
ORVEX_UPDATE_GOLDEN=1 ctest --preset release "$@"
git status --short tests/golden
