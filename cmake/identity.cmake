# What the module says of itself: its version, and which symbols belong to it.

# The records' header goes to hosts as it is, so it repeats the version of the project.
foreach(part IN ITEMS _MAJOR _MINOR _PATCH "")
    file(STRINGS module/contract/host_records.h stated REGEX "^#define RVK_MOD_SCROLL2D_VERSION${part} ")
    if(NOT stated MATCHES " \"?${PROJECT_VERSION${part}}\"?$")
        message(FATAL_ERROR "RVK_MOD_SCROLL2D_VERSION${part} in module/contract/host_records.h "
            "does not say ${PROJECT_VERSION${part}}, as project() in CMakeLists.txt does")
    endif()
endforeach()

# The text of module/entry/version.cpp stays, as if something read it; 32-bit Windows begins every name with a line.
target_link_options(RVK_mod_scroll2D PRIVATE -Wl,--undefined=$<$<BOOL:${WIN32}>:_>rvk_version_text)
if(CMAKE_EXECUTABLE_FORMAT STREQUAL ELF)
    target_link_options(RVK_mod_scroll2D PRIVATE -Wl,-soname,RVK_mod_scroll2D.so.${PROJECT_VERSION_MAJOR})
endif()

# Debug information changes no instruction. It leaves the file once that is linked, so that what is tested is what ships,
# and is found again by the id of the build or beside the file. It names no folder of the machine, and so the same
# sources give the same bytes wherever they are built; without --preserve-dates a DLL would carry the time of its copying.
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT SCROLL2D_SANITIZE)
    file(RELATIVE_PATH sources ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})  # a compiler cache may turn one into the other
    target_compile_options(scroll2d_objects PRIVATE -g
        -ffile-prefix-map=${sources}=./ -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.
        -ffile-prefix-map=${CMAKE_BINARY_DIR}=build -ffile-prefix-map=${SCROLL2D_TREE}=tree)  # the last that fits
    target_link_options(RVK_mod_scroll2D PRIVATE -Wl,--build-id=sha1)
    set(module_symbols $<TARGET_FILE:RVK_mod_scroll2D>.debug)
    add_custom_command(TARGET RVK_mod_scroll2D POST_BUILD VERBATIM
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug $<TARGET_FILE:RVK_mod_scroll2D> ${module_symbols}
        COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${module_symbols} $<TARGET_FILE:RVK_mod_scroll2D>)
endif()
