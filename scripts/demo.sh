#!/usr/bin/env bash
# From a fresh machine to pictures of a model: installs what is missing, builds orvex-render, and
# renders the model to out/, on the compatibility and on the core path.
#
#   scripts/demo.sh                 the sample model
#   scripts/demo.sh path/to/any.obj
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
model=$(realpath -m "${1:-$root/examples/data/lighthouse.obj}")
cd "$root"
# A wrong name is told at once, not behind the build.
if [[ ! -f $model || ! -r $model ]]; then
  echo "scripts/demo.sh: $model: no file that can be read" >&2
  exit 1
fi

scripts/setup.sh
# A build folder of its own, without the tests and the examples and what they need.
cmake --preset release -B build/demo -DORVEX_BUILD_TESTS=OFF -DORVEX_BUILD_EXAMPLES=OFF >/dev/null
cmake --build build/demo --target orvex-render

name=$(basename "${model%.*}")
mkdir -p out
for path in gl2 gl3; do
  build/demo/tools/orvex-render/orvex-render \
    --path "$path" --size 1280x960 --output "out/$name-$path.jpg" -- "$model"
done
