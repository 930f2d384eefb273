#!/usr/bin/env bash
# Runs a build's tests beside four busy loops, so that a test that needs a quiet machine shows itself:
# scripts/under_load.sh [build/release] [ctest's words]
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
shift || true
loops=()
trap 'kill "${loops[@]}" 2>/dev/null || true' EXIT
for _ in 1 2 3 4; do
  while :; do :; done &
  loops+=($!)
done
ctest --test-dir "$build" --output-on-failure -j 2 "$@"
