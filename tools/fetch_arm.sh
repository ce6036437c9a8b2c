#!/usr/bin/env bash
# Brings what builds for ARM Linux (armhf): Debian's cross compiler, and the player's libraries from the armhf packages.
#
# usage: fetch_arm.sh [TREE]        TREE defaults to build/armhf
#
# The compiler's packages would remove g++-multilib if they were installed; unpacked they stand beside it, and share the
# libraries of the system's own g++.
set -euo pipefail
. "$(dirname "$0")/fetch.sh"

triplet=arm-linux-gnueabihf
compiler=({g++,gcc,cpp}-12-$triplet binutils-$triplet
    {libgcc-12-dev,libgcc-s1,libstdc++-12-dev,libstdc++6,libc6,libc6-dev,linux-libc-dev}-armhf-cross)
libraries=(libsdl2-2.0-0)
headers=(liblua5.4-dev libpng-dev zlib1g-dev libsdl2-dev libimgui-dev libstb-dev)
tree=${1:-$SCROLL2D_ROOT/build/armhf}
contents="compiler and libraries for ARM"
stamp=$(printf '%s\n' "${compiler[@]}" "${libraries[@]}" "${headers[@]}")
megabytes=400

# What cmake calls, in the tree's bin/. The compiler finds all that it needs by its own place; the libraries of
# assembler and linker are told.
wrap_tools() {
    local tool
    mkdir -p "$unpacked/bin"
    for tool in gcc-12 g++-12 ar ranlib objcopy strip; do
        cat > "$unpacked/bin/$tool" <<END
#!/bin/sh
here=\$(dirname "\$0")
LD_LIBRARY_PATH=\$here/../usr/lib/$(uname -m)-linux-gnu exec "\$here/../usr/bin/$triplet-$tool" "\$@"
END
        chmod +x "$unpacked/bin/$tool"
    done
}

fill() {
    read_lists "$(dpkg --print-architecture)"
    download "${compiler[@]}"
    unpack
    read_lists armhf
    download_all "${libraries[@]}"
    download "${headers[@]}"
    unpack 'libc6_*' 'libcrypt*' 'libgcc-s1_*' 'libstdc++*' 'gcc-*-base_*'
    join_library_folders
    keep_links_inside
    keep_imgui_backends
    drop_documents
    wrap_tools
}

fetch_tree
