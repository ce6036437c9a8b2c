#!/usr/bin/env bash
# Brings the 32-bit libraries of tools/i386_packages.txt from Debian's i386 packages.
#
# usage: fetch_i386.sh [TREE]        TREE defaults to build/i386
#
# The C and C++ runtimes stay out of the tree: those come from g++-multilib, and a second copy of their headers or
# libraries would be mixed with the first.
set -euo pipefail
. "$(dirname "$0")/fetch.sh"

mapfile -t packages < <(sed 's/#.*//' "$SCROLL2D_ROOT/tools/i386_packages.txt" | xargs -n1)
tree=${1:-$SCROLL2D_ROOT/build/i386}
contents="32-bit libraries"
stamp=$(printf '%s\n' "${packages[@]}")
megabytes=120

fill() {
    local headers libraries
    mapfile -t headers < <(printf '%s\n' "${packages[@]}" | grep -e '-dev$')
    mapfile -t libraries < <(printf '%s\n' "${packages[@]}" | grep -v -e '-dev$')
    read_lists i386
    download_all "${libraries[@]}"
    download "${headers[@]}"
    unpack 'libc6[_-]*' 'libc-*' 'libcrypt*' 'libgcc-s1_*' 'libstdc++*' 'gcc-*-base_*' 'linux-libc-dev_*'
    join_library_folders
    keep_links_inside
    keep_imgui_backends
    drop_documents
}

fetch_tree
