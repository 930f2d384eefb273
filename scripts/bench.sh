#!/usr/bin/env bash
# Runs everything in bench/ beside the peers that are installed, and makes one table: scripts/bench.sh [OPTION...]
#
#     --only WORD     only programs whose name holds the word
#     --seconds N     for each benchmark, at least (0.5)
#     --out FOLDER    where table.md, table.json and what each program said go (build/bench/table)
#     --no-build      as they were built last
#
# Ends with 1 where a row falls behind its goal by more than a tenth, or a program fails. Peers that are missing
# have no rows: scripts/setup.sh bench installs them. See bench/README.md.
set -euo pipefail
cd "$(dirname "$0")/.."

options=()
is_built=
for word in "$@"; do
  case "$word" in
    --no-build) is_built=yes ;;
    *) options+=("$word") ;;
  esac
done
if [ -z "$is_built" ]; then
  cmake --preset bench >/dev/null
  cmake --build --preset bench
fi
exec python3 scripts/bench.py --programs build/bench/bench --sources bench --out build/bench/table \
  ${options[@]+"${options[@]}"}
