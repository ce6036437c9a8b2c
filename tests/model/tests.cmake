# Tests against the naive model of the module: pixel rules, walks, whole games.
scroll2d_test(rules_test module/rules_test.cpp)

# The loops that it calls are the product's own: of two equal functions the linker takes the first, and objects named
# in place of sources come first.
scroll2d_test(rows_test module/rows_test.cpp $<TARGET_OBJECTS:scroll2d_objects>)
set_source_files_properties(module/rows_test.cpp PROPERTIES COMPILE_OPTIONS -O0)

# The product's objects once more, in a module that lets tests look inside.
add_library(opened_module MODULE model/inside.cpp $<TARGET_OBJECTS:scroll2d_objects>)
set_target_properties(opened_module PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)
target_link_options(opened_module PRIVATE -Wl,-Bsymbolic)

add_library(scroll2d_model STATIC
    model/model.cpp model/planes.cpp model/script.cpp model/frame.cpp model/lockstep.cpp model/routines.cpp
    model/records.cpp model/interruptions.cpp model/random_game.cpp module/allocation.cpp png.cpp)
target_include_directories(scroll2d_model SYSTEM PRIVATE ${DOCTEST_INCLUDE_DIR})
target_compile_options(scroll2d_model PRIVATE -Wall -Wextra -Wconversion -Wshadow -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)  # GCC 12 sees overlaps in the concatenation of strings where there are none
target_link_libraries(scroll2d_model PUBLIC scroll2d_host)

# scroll2d_model_test(name source...): a test program that runs the module beside the model.
function(scroll2d_model_test name)
    scroll2d_test(${name} ${ARGN})
    target_compile_definitions(${name} PRIVATE SCROLL2D_MODULE="$<TARGET_FILE:RVK_mod_scroll2D>"
        SCROLL2D_OPENED_MODULE="$<TARGET_FILE:opened_module>")
    target_link_libraries(${name} PRIVATE scroll2d_model)
    add_dependencies(${name} RVK_mod_scroll2D opened_module)
endfunction()

scroll2d_model_test(ring_test module/ring_test.cpp)
scroll2d_model_test(random_game_test module/random_game_test.cpp)
