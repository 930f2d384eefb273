#!/usr/bin/env bash
# Changes one thing at a time in the libraries and tools and looks whether a test notices: scripts/mutants.sh [OPTION...]
#
#     --count N    mutants that compile, over all rooms by their size (400)
#     --seed N     another seed gives other mutants (1)
#     --room PATH  of them only those below PATH, such as src/orvex/scene or src/orvex_kit
#     --near       on the programs of its room alone: many mutants in little time
#     --seconds N  of processor time for the tests of a mutant (120)
#     --again      only those once more that survived, where tests were added
#     --trees N    works in N copies at once (1)
#     --list       prints what is left to try and what became of the rest, and ends
#
# Works in copies of what is committed, in build/mutants, and builds there what it needs. A mutant is tried on
# the tests that are named like its source, on those of its room, and on the others that test by themselves, the
# quick ones first, until one notices it. What became of it goes to build/mutants/log.jsonl, and a run that was
# cut off goes on from there. The table that remains tells each survivor, to be given a test or a reason.
set -euo pipefail
cd "$(dirname "$0")/.."
exec python3 scripts/mutants.py "$@"
