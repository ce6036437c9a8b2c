# What the author of a host gets from `cmake --install BUILD --prefix DIR`: the module, the headers, the guides with
# their pictures, and the examples.

set(sdk_headers module/contract/host_records.h module/contract/host_check.h)
# The headers under the names that they have once installed, so that the examples are the same files in both places.
foreach(header IN LISTS sdk_headers)
    get_filename_component(name ${header} NAME)
    configure_file(${header} include/rvk/${name} COPYONLY)
endforeach()

foreach(example one_page_host sprites_host)
    add_executable(${example} examples/${example}.c)
    target_include_directories(${example} PRIVATE ${CMAKE_BINARY_DIR}/include)
    target_compile_options(${example} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wcast-qual -Wstrict-prototypes -Wmissing-prototypes -Werror)
    target_link_libraries(${example} PRIVATE ${CMAKE_DL_LIBS})
endforeach()

# The pages lie beside the pictures that they show, as they do in the sources.
set(sdk_documents share/doc/RVK_mod_scroll2D)
install(TARGETS RVK_mod_scroll2D LIBRARY DESTINATION lib/rvk)
install(FILES ${sdk_headers} DESTINATION include/rvk)
install(FILES docs/host-authors.md docs/script-authors.md docs/player-scripts.md docs/exactness.md
    DESTINATION ${sdk_documents}/docs)
install(DIRECTORY docs/host DESTINATION ${sdk_documents}/docs FILES_MATCHING PATTERN "*.svg" PATTERN "*.png")
install(DIRECTORY demos DESTINATION ${sdk_documents} FILES_MATCHING PATTERN "*.png"
    PATTERN "*.8.png" EXCLUDE PATTERN golden EXCLUDE PATTERN lib EXCLUDE)
install(FILES examples/one_page_host.c examples/sprites_host.c DESTINATION ${sdk_documents}/examples)

# The film of the plane buffer, made from the buffer's own code: tools/ring_movie.py runs it.
add_executable(ring_movie tools/ring_movie.cpp $<TARGET_OBJECTS:scroll2d_objects>)
target_compile_options(ring_movie PRIVATE -Wall -Wextra -Wconversion -Wshadow -Werror)
