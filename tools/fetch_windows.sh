#!/usr/bin/env bash
# Brings what builds and runs programs for 32-bit Windows beside the system's cross compiler: Wine, and the player's
# libraries. Debian has Wine and zlib as packages; Lua and libpng are compiled from its source packages.
#
# usage: fetch_windows.sh [TREE]        TREE defaults to build/win32
#
# Wine takes its C library from the system's libc6-i386, which g++-multilib brings.
set -euo pipefail
. "$(dirname "$0")/fetch.sh"

packages=(wine32 libwine libz-mingw-w64 libz-mingw-w64-dev)
sources=(lua5.4 libpng1.6)
host=i686-w64-mingw32
tree=${1:-$SCROLL2D_ROOT/build/win32}
contents="Wine and the libraries for Windows"
stamp=$(printf '%s\n' "${packages[@]}" "${sources[@]}" "$(sha256sum < "$0")")
megabytes=800

fill() {
    say "98 MB to fetch, 270 MB unpacked; a minute or two"
    read_lists i386
    download "${packages[@]}"
    unpack
    read_lists "$(dpkg --print-architecture)" deb-src
    for source in "${sources[@]}"; do unpack_source "$source"; done
    drop_documents
    keep_links_inside
    keep_libraries
    compile_lua
    compile_png
    rm -rf "$unpacked/usr/src"
    set_up_wine
}

# One folder for the libraries, and one for the headers.
keep_libraries() {
    libraries=$unpacked/usr/lib/$host
    headers=$unpacked/usr/include
    mkdir -p "$libraries" "$headers"/{lua5.4,libpng16}
    mv "$unpacked/usr/$host"/include/* "$headers"
    mv "$unpacked/usr/$host"/lib/* "$libraries"
    rm -rf "$unpacked"/usr/*-w64-mingw32
}

# compile LIBRARY COMPILER SOURCE...: in the current folder.
compile() {
    local library=$libraries/$1 compiler=$2
    shift 2
    in_parallel 4 "$compiler -O2 -c" "$@" || fail "$library does not compile"
    quietly $host-ar rcs "$library" ./*.o
}

# in_parallel MOST COMMAND ARGUMENT...: the command, words, with so many arguments at most, on all processors.
in_parallel() {
    local most=$1 command=$2
    shift 2
    printf '%s\n' "$@" > "$state/arguments"
    # shellcheck disable=SC2086  # words
    quietly xargs -a "$state/arguments" -d '\n' -P "$(nproc)" -n "$most" $command
}

# As C++, so that its errors are exceptions and run the destructors of what they pass. Paths have the same slashes as
# elsewhere, since scripts take them apart.
compile_lua() {
    local files
    cd "$unpacked/usr/src/lua5.4/src"
    rm lua.c luac.c
    files=(*.c)
    compile liblua5.4-c++.a "$host-g++-posix -x c++ -DLUA_DIRSEP=\"/\"" "${files[@]}"
    cp lua.h luaconf.h lualib.h lauxlib.h "$headers/lua5.4"
    cd - > /dev/null
}

compile_png() {
    cd "$unpacked/usr/src/libpng1.6"
    cp scripts/pnglibconf.h.prebuilt pnglibconf.h
    compile libpng16.a "$host-gcc-posix -I$headers" png{,error,get,mem,pread,read,rio,rtran,rutil,set,trans,wio,write,wtran,wutil}.c
    cp png.h pngconf.h pnglibconf.h "$headers/libpng16"
    cd - > /dev/null
}

# bin/wine starts a program by its path. A prefix of its own keeps it from the user's; there is no desktop, nor its program,
# which would start itself over and over.
set_up_wine() {
    local wine=$unpacked/usr/lib/wine libraries_of_wine=$unpacked/usr/lib/i386-linux-gnu/wine/i386-windows
    local system=$unpacked/prefix/drive_c/windows/system32
    # The script of this name knows the paths of an installed Wine alone.
    ln -sf wineserver32 "$wine/wineserver"
    # Half of it is information for debuggers.
    in_parallel 40 "$host-strip -S" "$libraries_of_wine"/*.{dll,exe,drv,sys,ocx,cpl,acm} || fail "Wine cannot be made smaller"
    mkdir -p "$unpacked/bin" "$system"
    cat > "$unpacked/bin/wine" <<'END'
#!/bin/sh
tree=$(cd "$(dirname "$0")/.." && pwd) || exit
export WINEPREFIX="$tree/prefix" WINEARCH=win32 WINEDEBUG="${WINEDEBUG--all,err+module}"
export WINEDLLOVERRIDES="mscoree,mshtml=;explorer.exe,winemenubuilder.exe=d"
export WINELOADER="$tree/usr/lib/wine/wine" WINESERVER="$tree/usr/lib/wine/wineserver"
unset DISPLAY WAYLAND_DISPLAY
# The first program starts Wine's own ones, which go on for some seconds and hold its streams open: that is one without.
"$WINELOADER" attrib > /dev/null 2>&1 < /dev/null
exec "$WINELOADER" "$@"
END
    chmod +x "$unpacked/bin/wine"
    mv "$libraries/zlib1.dll" "$system"  # before the first start, which loads it
    quietly timeout 120 "$unpacked/bin/wine" wineboot -i || fail "Wine does not start"
    quietly env WINEPREFIX="$unpacked/prefix" "$wine/wineserver" -w
    # The prefix has copies of its libraries.
    in_parallel 40 "ln -ft $system" "$libraries_of_wine"/*.{dll,exe}
}

fetch_tree
