# What the target asks of every part: options of the compiler, and the libraries that are linked.

# ---- Compiling. Everything is 32-bit: the module by contract, the rest because it loads the module.

# Emscripten calls its machine x86, and it is none.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86|x86_64|AMD64|i[3-6]86)$" AND NOT EMSCRIPTEN)
    set(target_is_x86 ON)
    add_compile_options(-m32 -msse2 -mfpmath=sse)
    add_link_options(-m32)
endif()
# A product is rounded before it is added, whatever the processor could do: pictures are the same everywhere.
add_compile_options(-ffp-contract=off)

# ---- Libraries of the target, in a tree that a script of tools/ has fetched

set(SCROLL2D_TREE "${CMAKE_SOURCE_DIR}/build/i386" CACHE PATH "Tree of the target's libraries")
set(SCROLL2D_TRIPLET i386-linux-gnu CACHE STRING "The target's folder in its usr/lib")
set(SCROLL2D_FETCH tools/fetch_i386.sh CACHE STRING "The script that fetches it")
option(SCROLL2D_WINDOW "Build the player with window and inspector, which need SDL2 and Dear ImGui" ON)
set(target_libraries ${SCROLL2D_TREE}/usr/lib/${SCROLL2D_TRIPLET})
set(target_headers ${SCROLL2D_TREE}/usr/include)

# Libraries that are headers alone serve every target. They are reached by links, since what else lies beside them is of
# the system's own processor.
set(header_libraries ${CMAKE_BINARY_DIR}/headers)
include_directories(SYSTEM ${header_libraries})
foreach(header doctest/doctest.h stb/stb_easy_font.h CLI/CLI.hpp)
    get_filename_component(library ${header} DIRECTORY)
    find_path(SCROLL2D_${library}_HEADERS ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    if(SCROLL2D_${library}_HEADERS)
        file(MAKE_DIRECTORY ${header_libraries})
        file(CREATE_LINK ${SCROLL2D_${library}_HEADERS}/${library} ${header_libraries}/${library} SYMBOLIC)
    endif()
endforeach()

# SDL2. The shared one comes with libraries of its own; an old-style run path serves those as well. One of them looks for
# its private part where a system would have it installed, so that part is loaded first.
add_library(target_sdl INTERFACE)
target_include_directories(target_sdl SYSTEM INTERFACE
    ${target_headers}/SDL2 ${target_headers} ${target_headers}/${SCROLL2D_TRIPLET})
if(EXISTS ${target_libraries}/libSDL2.so)
    file(GLOB sound_libraries ${target_libraries}/pulseaudio/libpulsecommon-*.so)
    target_link_options(target_sdl INTERFACE
        -Wl,--disable-new-dtags -Wl,-rpath,${target_libraries}:${target_libraries}/pulseaudio
        -Wl,-rpath-link,${target_libraries}:${target_libraries}/pulseaudio)
    target_link_libraries(target_sdl INTERFACE
        -Wl,--no-as-needed ${sound_libraries} -Wl,--as-needed ${target_libraries}/libSDL2.so)
else()
    target_link_libraries(target_sdl INTERFACE ${target_libraries}/libSDL2.a)
endif()
