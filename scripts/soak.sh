#!/usr/bin/env bash
# Does the same for a long time, and fails if memory, OpenGL's objects, descriptors or threads grow.
#
#   scripts/soak.sh                  10 minutes on the release build
#   scripts/soak.sh --minutes 40
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=10
case "${1:-}" in
  '') ;;
  --minutes) minutes=${2:?"--minutes wants a number"} ;;
  *) echo "usage: scripts/soak.sh [--minutes N]" >&2; exit 2 ;;
esac

cmake --preset release >/dev/null
cmake --build --preset release --target soak
MESA_SHADER_CACHE_DISABLE=true build/release/tests/faults/soak --minutes "$minutes"
