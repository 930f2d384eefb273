#!/usr/bin/env bash
# Builds lib3ds 2.x into deps/lib3ds, where CMake looks for it when the system has none: Debian packages
# only 1.3, whose interface is another. The source is a folder of another source package of Debian's; it
# is fetched through lists of this script's own, and nothing of the system is changed. Where all stands
# already, this does nothing and needs no network.
#
#   scripts/get_lib3ds.sh                               from Debian's archive
#   ORVEX_LIB3DS_TARBALL=FILE scripts/get_lib3ds.sh     from that package's tarball, where no network is
set -euo pipefail
cd "$(dirname "$0")/.."

package=openscenegraph
tarball_name=openscenegraph_3.6.5+dfsg1.orig.tar.gz
tarball_sha256=e82b7ca471d5fd5c9ba11111eebf799c5b0fe22a11784f637323073bc371b5f4
source_folder='*/src/osgPlugins/3ds/lib3ds/*'
licence=/usr/share/common-licenses/LGPL-2.1
prefix=deps/lib3ds

fail() {
  echo "get_lib3ds: $1 (cmake -DORVEX_WITH_LIB3DS=OFF builds without 3DS models)" >&2
  exit 1
}

has_library() {
  [ -e "$prefix/lib/lib3ds-2.so" ] && [ -e "$prefix/include/lib3ds.h" ]
}
# One that was built with other memory functions than today's is built again, from the source beside it.
has_memory() {
  cmp -s scripts/lib3ds_memory.c "$prefix/src/orvex_memory.c"
}
if has_library && has_memory; then
  exit 0
fi
has_library || for include in /usr/local/include /usr/include; do
  if grep -qs lib3ds_file_create_nodes_for_meshes "$include/lib3ds.h"; then
    exit 0
  fi
done
for tool in cc tar gzip sha256sum; do
  command -v "$tool" >/dev/null || fail "lib3ds needs '$tool' to be built"
done
[ -e "$licence" ] || fail "lib3ds needs its licence's text, $licence, which is missing"

mkdir -p deps
work=$(mktemp -d "$PWD/deps/lib3ds.XXXXXX")
trap 'rm -rf "$work"' EXIT

# The machine's own lists, for sources instead of packages.
write_lists() {
  mkdir -p "$work/parts" "$work/lists/partial" "$work/cache/archives/partial"
  local list
  for list in /etc/apt/sources.list.d/*.sources; do
    [ -e "$list" ] && sed 's/^Types:.*/Types: deb-src/' "$list" >"$work/parts/$(basename "$list")"
  done
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -e "$list" ] && sed -nE 's/^deb(-src)?[[:space:]]/deb-src /p' "$list" >"$work/parts/$(basename "$list")"
  done
  return 0
}

with_own_lists() {
  apt-get -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$work/parts" \
    -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User=root "$@"
}

fetch() {
  command -v apt-get >/dev/null ||
    fail "no apt-get to fetch the source of lib3ds with: set ORVEX_LIB3DS_TARBALL to $tarball_name"
  echo "Fetching lib3ds from Debian's source package $package"
  write_lists
  # A list of somebody else's may have no sources: what counts is whether the package comes.
  with_own_lists update >"$work/log" 2>&1 || true
  (cd "$work" && with_own_lists source --download-only --tar-only "$package") >>"$work/log" 2>&1 || true
  if [ ! -e "$work/$tarball_name" ]; then
    sed 's/^/  /' "$work/log" | grep -E '^  (E|Err|W):' | tail -n 5 >&2 || true
    fail "can't fetch $tarball_name of Debian's source package $package: is there a network?"
  fi
}

mkdir -p "$work"/prefix/{include,lib,share/doc/lib3ds,src}
if has_library && [ -e "$prefix/src/lib3ds_file.c" ]; then
  cp "$prefix"/src/* "$work/prefix/src"
else
  if [ -n "${ORVEX_LIB3DS_TARBALL:-}" ]; then
    cp "$ORVEX_LIB3DS_TARBALL" "$work/$tarball_name" || fail "can't read $ORVEX_LIB3DS_TARBALL"
  else
    fetch
  fi
  echo "$tarball_sha256  $work/$tarball_name" | sha256sum --check --status ||
    fail "$tarball_name isn't the file it should be: its sha256 is another"
  tar -xzf "$work/$tarball_name" -C "$work/prefix/src" --strip-components=5 --wildcards "$source_folder"
fi
cp "$work/prefix/src/lib3ds.h" "$work/prefix/include"
cp "$licence" "$work"/prefix/src/{AUTHORS,COPYING,README} "$work/prefix/share/doc/lib3ds"
# With NDEBUG, or a malformed chunk ends the process. Its small functions lie in files of their own:
# called instead of inlined, normals take twice as long.
optimize=(-O3 -flto=auto -fno-semantic-interposition -fno-math-errno -ffp-contract=off)
# It doesn't look at what malloc gives: its memory comes from functions that never give it null.
cp scripts/lib3ds_memory.c "$work/prefix/src/orvex_memory.c"
memory=(-Dmalloc=lib3ds_malloc -Dcalloc=lib3ds_calloc -Drealloc=lib3ds_realloc -Dfree=lib3ds_free
  -include stdlib.h)
"${CC:-cc}" -std=gnu99 "${optimize[@]}" -w -fPIC -c "$work/prefix/src/orvex_memory.c" \
  -o "$work/memory.o" || fail "lib3ds's memory doesn't compile"
"${CC:-cc}" -std=gnu99 "${optimize[@]}" "${memory[@]}" -DNDEBUG -w -fPIC -shared \
  -Wl,-soname,lib3ds-2.so -Wl,-Bsymbolic,-z,defs \
  -o "$work/prefix/lib/lib3ds-2.so" "$work/memory.o" "$work"/prefix/src/lib3ds_*.c -lm || fail "lib3ds doesn't compile"

rm -rf "$prefix"
mv "$work/prefix" "$prefix"
echo "lib3ds stands in $prefix"
