#!/usr/bin/env bash
# Changes one thing at a time in the libraries and tools and looks whether a test notices: scripts/mutants.sh [OPTION...]
#
#     --count N    mutants, spread over all rooms by their size (400)
#     --seed N     another seed gives other mutants (1)
#     --room PATH  only sources below PATH, such as src/orvex/scene or src/orvex_kit
#     --near       on the programs of its room alone: many mutants in little time
#     --list       prints the mutants and ends
#
# Works in a copy of what is committed, in build/mutants, and builds there first. A mutant is tried on the
# test programs of its room; one that survives them is tried on all programs that test by themselves. The
# table that remains tells each survivor, to be given a test or a reason.
set -euo pipefail
cd "$(dirname "$0")/.."
exec python3 scripts/mutants.py "$@"
