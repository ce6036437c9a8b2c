# What the author of a host gets from `cmake --install BUILD --prefix DIR`, and in the archives of tools/release: the
# module, the headers, the layout for machines, what finds them, the guides with their pictures, and the examples.

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

# The layout of the records for machines.
set(sdk_records share/RVK_mod_scroll2D/records.json)
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
    set(records ${CMAKE_BINARY_DIR}/records.json)
    add_custom_command(OUTPUT ${records} VERBATIM
        COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/tools/records.py
            ${CMAKE_SOURCE_DIR}/module/contract/host_records.h > ${records}
        DEPENDS tools/records.py module/contract/host_records.h)
    add_custom_target(sdk_records ALL DEPENDS ${records})
    add_dependencies(RVK_mod_scroll2D sdk_records)
    install(FILES ${records} DESTINATION share/RVK_mod_scroll2D)
else()
    message(STATUS "No records.json: python3 is not installed")
endif()

# What finds the rest: for CMake and for pkg-config.
include(CMakePackageConfigHelpers)
set(sdk_module lib/rvk/RVK_mod_scroll2D${CMAKE_SHARED_MODULE_SUFFIX})
set(sdk_package ${CMAKE_BINARY_DIR}/package)
configure_file(cmake/package/RVK_mod_scroll2D.pc.in ${sdk_package}/RVK_mod_scroll2D.pc @ONLY)
configure_file(cmake/package/RVK_mod_scroll2DConfig.cmake.in ${sdk_package}/RVK_mod_scroll2DConfig.cmake @ONLY)
# Whether the compiler of a host makes 32-bit code is known to its author: by its name, by flags for all targets or for one.
write_basic_package_version_file(${sdk_package}/RVK_mod_scroll2DConfigVersion.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES ${sdk_package}/RVK_mod_scroll2D.pc DESTINATION lib/pkgconfig)
install(FILES ${sdk_package}/RVK_mod_scroll2DConfig.cmake ${sdk_package}/RVK_mod_scroll2DConfigVersion.cmake
    DESTINATION lib/cmake/RVK_mod_scroll2D)

install(TARGETS RVK_mod_scroll2D LIBRARY DESTINATION lib/rvk)
install(FILES ${sdk_headers} DESTINATION include/rvk)
if(DEFINED module_symbols AND CMAKE_EXECUTABLE_FORMAT STREQUAL ELF)
    configure_file(cmake/package/install_symbols.cmake.in ${sdk_package}/install_symbols.cmake.in @ONLY)
    file(GENERATE OUTPUT ${sdk_package}/install_symbols.cmake INPUT ${sdk_package}/install_symbols.cmake.in)
    install(SCRIPT ${sdk_package}/install_symbols.cmake)
elseif(DEFINED module_symbols)
    install(FILES ${module_symbols} DESTINATION lib/rvk)  # where debuggers look for a file without the id of a build
endif()

# The pages lie beside the pictures that they show, as they do in the sources.
set(sdk_documents share/doc/RVK_mod_scroll2D)
install(FILES CHANGELOG.md LICENCE.md DESTINATION ${sdk_documents})
install(FILES docs/host-authors.md docs/script-authors.md docs/player-scripts.md docs/exactness.md docs/compatibility.md
    DESTINATION ${sdk_documents}/docs)
install(DIRECTORY docs/host DESTINATION ${sdk_documents}/docs FILES_MATCHING PATTERN "*.svg" PATTERN "*.png")
install(DIRECTORY demos DESTINATION ${sdk_documents} FILES_MATCHING PATTERN "*.png"
    PATTERN "*.8.png" EXCLUDE PATTERN golden EXCLUDE PATTERN lib EXCLUDE)
install(FILES examples/one_page_host.c examples/sprites_host.c
    examples/python_binding.py examples/python_host.py DESTINATION ${sdk_documents}/examples)

# The film of the plane buffer, made from the buffer's own code: tools/ring_movie.py runs it.
add_executable(ring_movie tools/ring_movie.cpp $<TARGET_OBJECTS:scroll2d_objects>)
target_compile_options(ring_movie PRIVATE -Wall -Wextra -Wconversion -Wshadow -Werror)
