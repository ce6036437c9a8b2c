# The pictures of the demos and of the guide, compared pixel by pixel with the committed ones. Too slow under sanitizers.
add_test(NAME gallery_tool COMMAND ${CMAKE_SOURCE_DIR}/tests/pages/gallery_test.py ${CMAKE_SOURCE_DIR}/tools/gallery)
set_tests_properties(gallery_tool PROPERTIES LABELS slow)
if(TARGET scroll2d_player AND NOT SCROLL2D_SANITIZE)
    add_test(NAME gallery COMMAND ${CMAKE_SOURCE_DIR}/tools/gallery check --player $<TARGET_FILE:scroll2d_player>)
    set_tests_properties(gallery PROPERTIES LABELS slow)
endif()
add_test(NAME guide_pages COMMAND ${CMAKE_SOURCE_DIR}/tests/pages/guide_test.py)
