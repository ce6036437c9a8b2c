# Toolchain of WebAssembly, by Emscripten's own. Programs run under node.

# Exceptions are WebAssembly's own: a call costs nothing that it would not cost elsewhere.
foreach(language C CXX)
    set(CMAKE_${language}_FLAGS_INIT "-msimd128 -fwasm-exceptions")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-sENVIRONMENT=node -sNODERAWFS=1 -sEXIT_RUNTIME=1 -sALLOW_MEMORY_GROWTH=1 --pre-js=${CMAKE_CURRENT_LIST_DIR}/node_program.js")
# Node's own fetch, which reads no files, passes for a browser's.
set(CMAKE_CROSSCOMPILING_EMULATOR node --no-experimental-fetch)

include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
