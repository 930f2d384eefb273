#!/usr/bin/env bash
# Installs what orvex needs from Debian's packages, as root or through sudo, and builds the one library
# that Debian doesn't package (get_lib3ds.sh). Only what is missing is asked for, so a second run is quick
# and needs no network.
#
#   scripts/setup.sh          what the library and the demo need
#   scripts/setup.sh test     that, and what the tests need
#   scripts/setup.sh bench    that, and the benchmark library with the peers it compares with
#   scripts/setup.sh fuzz     that, and clang for the fuzz targets
#   scripts/setup.sh package  that, and what Debian packages are made with
set -euo pipefail

build=(cmake g++ ninja-build pkg-config libegl-dev libopengl-dev libgl-dev libstb-dev libtinyxml2-dev
       libegl-mesa0 libgl1-mesa-dri libdeflate-dev libopenexr-dev libcli11-dev nlohmann-json3-dev
       nettle-dev zlib1g-dev fonts-dejavu-core libsimdjson-dev libmeshoptimizer-dev libseccomp-dev
       libassimp-dev libdraco-dev)
test=(python3 python3-cffi python3-numpy python3-venv python3-setuptools python3-wheel mypy libgtest-dev
      libjpeg62-turbo-dev libx11-dev libxtst-dev libwayland-dev libglfw3-dev libsdl2-dev libgtk-3-dev
      libgtk-4-dev qtbase5-dev libqt6opengl6-dev xvfb weston libglut3.12 clang clang-format clang-tidy doxygen
      dpkg-dev file lintian groff-base glmark2-data libpng-dev abigail-tools parallel openssh-client
      openssh-server slurmctld slurmd slurm-client munge redis-server python3-celery python3-distributed
      python3-redis)
bench=(libbenchmark-dev libtinygltf-dev libtinyobjloader-dev libglm-dev libspdlog-dev libjpeg62-turbo-dev libpng-dev)
fuzz=(clang libclang-rt-14-dev)
package=(dpkg-dev file lintian doxygen python3 python3-cffi python3-numpy libglfw3-dev)

wanted=("${build[@]}")
case "${1:-}" in
  '') ;;
  test) wanted+=("${test[@]}") ;;
  bench) wanted+=("${bench[@]}") ;;
  fuzz) wanted+=("${fuzz[@]}") ;;
  package) wanted+=("${package[@]}") ;;
  *) echo "usage: scripts/setup.sh [test|bench|fuzz|package]" >&2; exit 2 ;;
esac

missing=()
for name in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' ||
    missing+=("$name")
done

install_missing() {
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
}
if [ ${#missing[@]} -gt 0 ]; then
  install_missing
fi

"$(dirname "$0")/get_lib3ds.sh"
if [ "${1:-}" = test ]; then
  "$(dirname "$0")/get_gltf_validator.sh"
fi
