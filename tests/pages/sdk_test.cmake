# Installs the SDK into an empty folder, builds the example there with nothing but what was installed, and runs it.
#
# cmake -D BUILD=... -D CONFIG=... -D CC=... -D FLAGS=... -D REFERENCE=... -P sdk_test.cmake
#   FLAGS      a list: what every object of this build is compiled with besides -m32 (the sanitizers, if any)
#   REFERENCE  the picture of the example of the build tree
set(prefix ${BUILD}/sdk)
set(documents ${prefix}/share/doc/RVK_mod_scroll2D)
file(REMOVE_RECURSE ${prefix})

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\n${output}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --config "${CONFIG}" --prefix ${prefix})

set(expected
    include/rvk/host_records.h
    lib/rvk/RVK_mod_scroll2D.so
    share/doc/RVK_mod_scroll2D/examples/one_page_host.c
    share/doc/RVK_mod_scroll2D/exactness.md
    share/doc/RVK_mod_scroll2D/host-authors.md)
foreach(file IN LISTS expected)
    if(NOT EXISTS ${prefix}/${file})
        message(FATAL_ERROR "not installed: ${file}")
    endif()
endforeach()

# Every picture that the installed pages show is installed too.
foreach(page host-authors exactness)
    file(READ ${documents}/${page}.md text)
    string(REGEX MATCHALL "!\\[[^]]*\\]\\([^)]+\\)" pictures "${text}")
    foreach(picture IN LISTS pictures)
        string(REGEX REPLACE ".*\\(([^)]+)\\)" "\\1" picture "${picture}")
        if(NOT EXISTS ${documents}/${picture})
            message(FATAL_ERROR "${page}.md shows ${picture}, which is not installed")
        endif()
    endforeach()
endforeach()

run(${CC} -m32 -std=c99 -Wall -Wextra -Wpedantic -Wconversion -Werror ${FLAGS} -I ${prefix}/include
    ${documents}/examples/one_page_host.c -ldl -o ${prefix}/one_page_host)
run(${prefix}/one_page_host ${prefix}/lib/rvk/RVK_mod_scroll2D.so ${prefix}/picture.ppm)
run(${CMAKE_COMMAND} -E compare_files ${prefix}/picture.ppm ${REFERENCE})
