#!/usr/bin/env bash
# Changes one thing at a time in the engine and looks whether a test notices: scripts/mutants.sh [OPTION...]
#
#     --count N    mutants, spread over all rooms by their size (400)
#     --seed N     another seed gives other mutants (1)
#     --room PATH  only sources below src/orvex/PATH
#     --list       prints the mutants and ends
#
# Works in a copy of what is committed, in build/mutants, and builds there first. A mutant is tried on the
# test programs of its room; one that survives them is tried on all programs that test by themselves. The
# table that remains tells each survivor, to be given a test or a reason.
set -euo pipefail
cd "$(dirname "$0")/.."
exec python3 scripts/mutants.py "$@"
