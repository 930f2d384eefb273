#!/usr/bin/env bash
# Formats every C++ file of the repository, or with --check only says which are not.
set -euo pipefail
cd "$(dirname "$0")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Where `const` stands, and braces round a single plain statement, are decided in a pass of their own: the
# pass that moves qualifiers lays out lambdas in a way of its own, which the plain pass mends.
{ cat .clang-format; echo 'QualifierAlignment: Left'; echo 'RemoveBracesLLVM: true'; } >"$work/words"

if [ "${1:-}" != --check ]; then
  git ls-files -z '*.h' '*.cpp' | xargs -0 -r clang-format -i --style="file:$work/words"
  git ls-files -z '*.h' '*.cpp' | xargs -0 -r clang-format -i
  exit 0
fi

git ls-files -z '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror
# The words of a file, without the space between them, are what the first pass leaves of them.
git ls-files '*.h' '*.cpp' | xargs -P "$(nproc)" -n 40 bash -c '
  style=$0; result=0
  for file; do
    clang-format --style="file:$style" "$file" | tr -d "[:space:]" | cmp -s - <(tr -d "[:space:]" <"$file") ||
      { echo "$file: const belongs to the left, and a single plain statement wants no braces" >&2; result=1; }
  done
  exit $result' "$work/words"
