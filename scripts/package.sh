#!/usr/bin/env bash
# Makes the Debian packages and the source tarball, in out/packages: liborvex-r-osx0.9, liborvex-kit0.9 and
# liborvex-c0 (the libraries), liborvex-dev and liborvex-c-dev (what hosts are built with), liborvex-doc (guide,
# reference, examples), python3-orvex (the module), orvex-tools (orvex-render), orvex-view (the viewer) and
# orvex-import (more formats).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh package
cmake --preset package >/dev/null
cmake --build --preset package
cpack --config build/package/CPackConfig.cmake -B out/packages
cpack --config build/package/CPackSourceConfig.cmake -B out/packages
rm -rf out/packages/_CPack_Packages
ls -l out/packages
