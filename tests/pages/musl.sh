#!/usr/bin/env bash
# The finished file in a host that is linked to another C library, musl: it draws the same picture. Skipped (77) where
# musl is not in the tree.
#
# usage: musl.sh BUILD TREE
set -euo pipefail
build=$1 library=$2/usr/lib/i386-linux-musl root=$(cd "$(dirname "$0")/../.." && pwd)
[[ -f $library/musl-gcc.specs ]] || exit 77
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
sed -E "s#/usr/(lib|include)/#$2/usr/\1/#g" "$library/musl-gcc.specs" > "$scratch/specs"
gcc -m32 -Wl,-m,elf_i386 -specs="$scratch/specs" -std=c99 -I "$build/include" "$root/examples/one_page_host.c" -o "$scratch/host"
readelf -d "$scratch/host" | grep -q 'NEEDED.*\[libc.so\]'  # musl's name; glibc's would be libc.so.6
"$library/libc.so" "$scratch/host" "$build/RVK_mod_scroll2D.so" "$scratch/picture.ppm"
"$root/tools/pictures.py" check "$scratch/picture.ppm" "$root/docs/host/one_page_host.png"
