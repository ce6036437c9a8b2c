# The product: RVK_mod_scroll2D.so. One list of sources, compiled once; the tests may link the same objects.

add_library(scroll2d_objects OBJECT
    module/state/scroll_table.cpp
    module/scroll/script_call.cpp
    module/buffer/map_copy.cpp
    module/buffer/fill.cpp
    module/buffer/shift.cpp
    module/buffer/plane_buffers.cpp
    module/buffer/check_ring.cpp
    module/scroll/view.cpp
    module/scroll/rebuild.cpp
    module/scroll/start.cpp
    module/scroll/stop.cpp
    module/scroll/camera.cpp
    module/scroll/refresh.cpp
    module/scroll/destination.cpp
    module/render/vector_unit.cpp
    module/render/calm.cpp
    module/render/plane_single.cpp
    module/render/plane_layer.cpp
    module/render/plane_parallax.cpp
    module/entry/routine_table.cpp
    module/render/frame.cpp
    module/render/sprites.cpp
    module/render/services.cpp
    module/entry/lifecycle.cpp
    module/entry/registration.cpp
    module/entry/version.cpp)

set_target_properties(scroll2d_objects PROPERTIES
    POSITION_INDEPENDENT_CODE $<NOT:$<BOOL:${EMSCRIPTEN}>>
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

target_compile_options(scroll2d_objects PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    -fno-exceptions -fno-rtti -fno-threadsafe-statics)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
    target_sources(scroll2d_objects PRIVATE module/entry/arm_division.cpp)
endif()
if(target_is_x86)
    # A host may keep the stack on 4 bytes only. Vector spills need 16 or 32, and what the module calls, the host's
    # slots and the C library, may expect 16: every function that needs or passes on an aligned stack aligns it.
    target_compile_options(scroll2d_objects PRIVATE
        -mstackrealign $<$<CXX_COMPILER_ID:GNU>:-mincoming-stack-boundary=2>)
endif()

if(NOT SCROLL2D_SANITIZE)
    target_compile_options(scroll2d_objects PRIVATE
        # Emscripten's compiler lets -Os prevail over what follows it, and then writes past the end of rows.
        $<$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:${EMSCRIPTEN}>>>:-Os>
        # The finished file may import malloc, free and memcpy only: no memset or memmove made from loops.
        $<IF:$<CXX_COMPILER_ID:GNU>,-fno-tree-loop-distribute-patterns,-fno-builtin-memset> -fno-stack-protector
        # No exception passes through the module, and a debugger finds its unwinding beside the symbols.
        -fno-asynchronous-unwind-tables
        -ffunction-sections -fdata-sections)
endif()

# What runs over pixels is built for speed. The loops over rows stay one: without the last two options GCC makes copies
# of them for the rows before and after the wrap.
set_source_files_properties(module/render/calm.cpp module/buffer/map_copy.cpp module/buffer/fill.cpp module/buffer/shift.cpp PROPERTIES
    COMPILE_OPTIONS "$<$<CONFIG:Release>:-O2>")
set_source_files_properties(module/render/plane_single.cpp module/render/plane_layer.cpp module/render/plane_parallax.cpp PROPERTIES
    COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>;$<$<CXX_COMPILER_ID:GNU>:-fno-unswitch-loops;-fno-split-loops>")

if(EMSCRIPTEN)
    include(cmake/linked_module.cmake)
    return()
endif()

# The finished file shows the symbols of a list and no others. How that is said depends on its format.
add_library(RVK_mod_scroll2D MODULE $<TARGET_OBJECTS:scroll2d_objects>)
set_target_properties(RVK_mod_scroll2D PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
set(module_exports ${CMAKE_SOURCE_DIR}/module/entry/exports.map)
if(WIN32)
    include(cmake/link_pe.cmake)
else()
    include(cmake/link_elf.cmake)
endif()
