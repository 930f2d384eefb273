#!/usr/bin/env bash
# Draws a batch of models, mutants of models and poison once undisturbed, and once while workers and the
# supervisor are killed and the batch is resumed; fails unless pictures and verdicts are the same.
#
#   scripts/batch_soak.sh                  10,000 entries on the release build
#   scripts/batch_soak.sh --count 500 --supervisor-kills 5
#   scripts/batch_soak.sh --help           what else can be set
set -euo pipefail
cd "$(dirname "$0")/.."

case " $* " in
  *' --help '*) exec python3 scripts/batch_soak.py --help ;;
esac
cmake --preset release >/dev/null
cmake --build --preset release --target orvex-render poison_loader
exec python3 scripts/batch_soak.py "$@"
