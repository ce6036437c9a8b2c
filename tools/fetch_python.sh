#!/usr/bin/env bash
# Brings a 32-bit Python with ctypes from Debian's i386 packages: what the example of a binding runs in.
#
# usage: fetch_python.sh [TREE]        TREE defaults to build/python
#
# It runs with the C library of g++-multilib, and with LD_LIBRARY_PATH and PYTHONHOME in its tree.
set -euo pipefail
. "$(dirname "$0")/fetch.sh"

packages=(python3.11-minimal libpython3.11-{minimal,stdlib} libffi8 libexpat1 zlib1g)
tree=${1:-$SCROLL2D_ROOT/build/python}
contents="32-bit Python"
stamp=$(printf '%s\n' "${packages[@]}")
megabytes=80

fill() {
    read_lists i386
    download "${packages[@]}"
    unpack
    cp -a "$unpacked/lib/." "$unpacked/usr/lib/"  # one library folder
    rm -rf "${unpacked:?}/lib"
    keep_links_inside
    drop_documents
}

fetch_tree
