#!/usr/bin/env bash
# Formats every C++ file of the repository, or with --check only says which are not.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=-i
[ "${1:-}" = --check ] && mode='--dry-run -Werror'
# shellcheck disable=SC2086  # the mode is one or two words
git ls-files -z '*.h' '*.cpp' | xargs -0 -r clang-format $mode
