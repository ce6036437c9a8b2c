# The player's parts one by one; what scripts promise is tested by the scripts of player/ themselves.
if(NOT TARGET scroll2d_player_parts)
    return()
endif()
scroll2d_test(player_test
    player/main_test.cpp player/input_test.cpp player/window_test.cpp player/names_test.cpp player/script_test.cpp
    player/inspector_test.cpp)
target_compile_definitions(player_test PRIVATE
    DOCTEST_CONFIG_SUPER_FAST_ASSERTS SCROLL2D_MODULE="$<TARGET_FILE:RVK_mod_scroll2D>")
target_compile_options(player_test PRIVATE -O0)
target_link_libraries(player_test PRIVATE scroll2d_player_parts)
add_dependencies(player_test RVK_mod_scroll2D)
