#!/usr/bin/env bash
# Runs clang-tidy, as .clang-tidy says, over every source of a build folder: scripts/tidy.sh [build/release]
# [more of clang-tidy's words]. Names are held by scripts/check_clang.py; GCC's own warnings are unknown here.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
shift || true
mkdir -p "$build/tidy"
python3 - "$build" <<'EOF' | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build/tidy" --quiet \
  --extra-arg=-Wno-unknown-warning-option --checks=-readability-identifier-naming --warnings-as-errors='*' "$@" 2>/dev/null
# A list of commands without the headers that GCC has read already: clang can't read what GCC keeps of them.
import json, os, re, sys
with open(os.path.join(sys.argv[1], "compile_commands.json"), encoding="utf-8") as file:
    entries = json.load(file)
for entry in entries:
    entry["command"] = re.sub(r" -Winvalid-pch| -include \S*/cmake_pch\.hxx", "", entry["command"])
with open(os.path.join(sys.argv[1], "tidy/compile_commands.json"), "w", encoding="utf-8") as file:
    json.dump(entries, file)
files = {os.path.normpath(os.path.join(entry["directory"], entry["file"])) for entry in entries}
here = os.getcwd() + "/"
print("\n".join(sorted(file for file in files
                       if file.startswith(here) and not file.startswith((here + "build/", here + "deps/")))))
EOF
