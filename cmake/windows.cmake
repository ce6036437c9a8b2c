# Toolchain of 32-bit Windows: the system's cross compiler, and the tree of tools/fetch_windows.sh. Programs run under
# Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

get_filename_component(tree ${CMAKE_CURRENT_LIST_DIR}/../build/win32 ABSOLUTE)
set(SCROLL2D_TREE ${tree} CACHE PATH "Tree of the target's libraries")
set(SCROLL2D_TRIPLET i686-w64-mingw32 CACHE STRING "The target's folder in its usr/lib")
set(SCROLL2D_FETCH tools/fetch_windows.sh CACHE STRING "The script that fetches it")

# Of the two builds of the compiler the one with threads of the standard library.
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR ${tree}/bin/wine)
# Programs bring their C++ runtime along.
foreach(kind EXE MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT -static)
endforeach()
