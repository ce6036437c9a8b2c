# The pictures of the demos and of the guide.
add_test(NAME gallery_tool COMMAND ${CMAKE_SOURCE_DIR}/tests/gallery_test.py ${CMAKE_SOURCE_DIR}/tools/gallery)
