# What the pages show and name: the example host, the installed SDK, the film of the ring.
scroll2d_test(one_page_host_test pages/one_page_host_test.cpp)
target_compile_definitions(one_page_host_test PRIVATE
    ONE_PAGE_HOST="$<TARGET_FILE:one_page_host>"
    SCROLL2D_MODULE="$<TARGET_FILE:RVK_mod_scroll2D>"
    STANDIN_STEM="$<TARGET_FILE_DIR:standin_0>/standin_")
add_dependencies(one_page_host_test one_page_host RVK_mod_scroll2D standin_0 standin_7)

set(sdk_flags)
if(SCROLL2D_SANITIZE)
    set(sdk_flags -fsanitize=address,undefined)
endif()
add_test(NAME sdk_test
    COMMAND ${CMAKE_COMMAND} -D BUILD=${CMAKE_BINARY_DIR} -D CONFIG=$<CONFIG> -D CC=${CMAKE_C_COMPILER}
        "-DFLAGS=${sdk_flags}" -D REFERENCE=$<TARGET_FILE:one_page_host>.ppm
        -P ${CMAKE_CURRENT_SOURCE_DIR}/pages/sdk_test.cmake)
set_tests_properties(one_page_host_test PROPERTIES FIXTURES_SETUP one_page_picture)
add_test(NAME one_page_picture
    COMMAND ${CMAKE_SOURCE_DIR}/tools/pictures.py check $<TARGET_FILE:one_page_host>.ppm
        ${CMAKE_SOURCE_DIR}/docs/host/one_page_host.png)
set_tests_properties(sdk_test one_page_picture PROPERTIES FIXTURES_REQUIRED one_page_picture)
if(NOT SCROLL2D_SANITIZE) # builds the module as it ships
    add_test(NAME host_guide
        COMMAND ${CMAKE_COMMAND} -D ROOT=${CMAKE_SOURCE_DIR} -D FOLDER=${CMAKE_BINARY_DIR}/host_guide
            -D REFERENCE=$<TARGET_FILE:one_page_host>.ppm -P ${CMAKE_CURRENT_SOURCE_DIR}/pages/host_guide_test.cmake)
    set_tests_properties(host_guide PROPERTIES FIXTURES_REQUIRED one_page_picture LABELS slow)
endif()

# Both compilers that hosts are likely to use, where they are installed.
find_program(SCROLL2D_CLANG clang)
find_program(SCROLL2D_CLANGXX clang++)
set(c_compilers ${CMAKE_C_COMPILER})
set(cxx_compilers ${CMAKE_CXX_COMPILER})
if(SCROLL2D_CLANG AND SCROLL2D_CLANGXX)
    list(APPEND c_compilers ${SCROLL2D_CLANG})
    list(APPEND cxx_compilers ${SCROLL2D_CLANGXX})
endif()
add_test(NAME header_test
    COMMAND ${CMAKE_COMMAND} -D INCLUDE=${CMAKE_BINARY_DIR}/include -D FOLDER=${CMAKE_BINARY_DIR}/header_test
        "-DCC=${c_compilers}" "-DCXX=${cxx_compilers}" -P ${CMAKE_CURRENT_SOURCE_DIR}/pages/header_test.cmake)

# The program checks every view pixel of its story by itself.
add_test(NAME ring_movie COMMAND ring_movie)
