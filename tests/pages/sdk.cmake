# What the pages show and name: the installed SDK with its examples, the headers, the film of the ring.
set(sdk_environment BUILD=${CMAKE_BINARY_DIR} CC=${CMAKE_C_COMPILER})
if(SCROLL2D_SANITIZE)
    list(APPEND sdk_environment FLAGS=-fsanitize=address,undefined)
else() # builds the module as it ships
    add_test(NAME host_guide COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/pages/sdk_test.py Guide)
    set_tests_properties(host_guide PROPERTIES ENVIRONMENT "${sdk_environment}" LABELS slow)
endif()
add_test(NAME sdk_test COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/pages/sdk_test.py Sdk)
set_tests_properties(sdk_test PROPERTIES ENVIRONMENT "${sdk_environment}")

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
