# What the author of a host gets from `cmake --install BUILD --prefix DIR`: the module, the header of the records,
# the guide with its pictures, and a host of one page.

# The header under the name that it has once installed, so that the example is the same file in both places.
configure_file(module/contract/host_records.h include/rvk/host_records.h COPYONLY)

add_executable(one_page_host examples/one_page_host.c)
target_include_directories(one_page_host PRIVATE ${CMAKE_BINARY_DIR}/include)
target_compile_options(one_page_host PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wcast-qual -Wstrict-prototypes -Wmissing-prototypes -Werror)
target_link_libraries(one_page_host PRIVATE ${CMAKE_DL_LIBS})

set(sdk_documents share/doc/RVK_mod_scroll2D)
install(TARGETS RVK_mod_scroll2D LIBRARY DESTINATION lib/rvk)
install(FILES module/contract/host_records.h DESTINATION include/rvk)
install(FILES docs/host-authors.md docs/exactness.md DESTINATION ${sdk_documents})
install(DIRECTORY docs/host DESTINATION ${sdk_documents} FILES_MATCHING PATTERN "*.svg" PATTERN "*.png")
install(FILES examples/one_page_host.c DESTINATION ${sdk_documents}/examples)

# The film of the plane buffer, made from the buffer's own code: tools/ring_movie.py runs it.
add_executable(ring_movie tools/ring_movie.cpp $<TARGET_OBJECTS:scroll2d_objects>)
target_compile_options(ring_movie PRIVATE -Wall -Wextra -Wconversion -Wshadow -Werror)
