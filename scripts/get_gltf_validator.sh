#!/usr/bin/env bash
# Installs gltf-validator, which judges glTF files in the tests, into deps/gltf-validator. It needs npm and
# the network; where npm isn't, this says so, and the tests do without the judge.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=deps/gltf-validator
version=2.0.0-dev.3.10

if [ -e "$prefix/node_modules/gltf-validator/gltf_validator.dart.js" ]; then
  exit 0
fi
if ! command -v npm >/dev/null; then
  echo "get_gltf_validator: without npm, the tests do without a judge of glTF files"
  exit 0
fi
mkdir -p "$prefix"
npm install --no-audit --no-fund --ignore-scripts --prefix "$prefix" "gltf-validator@$version" ||
  echo "get_gltf_validator: npm couldn't fetch it: the tests do without a judge of glTF files"
