# Links the module as a DLL of Windows, and what is linked like it.

enable_language(RC)

# write_exports(DEF_FILE NAME...): what a DLL shows, from the list of the version script and further names of data.
function(write_exports def_file)
    add_custom_command(OUTPUT ${def_file} VERBATIM
        COMMAND ${CMAKE_COMMAND} -D MAP=${module_exports} -D DEF=${def_file} "-D DATA=${ARGN}"
            -P ${CMAKE_SOURCE_DIR}/cmake/write_def.cmake
        DEPENDS ${module_exports} ${CMAKE_SOURCE_DIR}/cmake/write_def.cmake)
endfunction()

# link_as_module(TARGET NAME...): a DLL that imports what the product does, shows what it shows, and the data named.
function(link_as_module target)
    write_exports(${CMAKE_BINARY_DIR}/${target}.def ${ARGN})
    target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/${target}.def)
    target_link_options(${target} PRIVATE
        # No start-up code and no C++ runtime; of libgcc only 64-bit division and the processor check.
        -nostartfiles -nodefaultlibs -Wl,--entry=0
        -Wl,--gc-sections
        -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-seh
        # The same sources give the same file.
        -Wl,--no-insert-timestamp)
    target_link_libraries(${target} PRIVATE msvcrt gcc)
endfunction()

link_as_module(RVK_mod_scroll2D)

configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_BINARY_DIR}/version.rc @ONLY)
target_sources(RVK_mod_scroll2D PRIVATE ${CMAKE_BINARY_DIR}/version.rc)
