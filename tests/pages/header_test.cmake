# The installed headers as strangers compile them: silent under their warnings, and one clear error for a wrong target.
#
# cmake -D INCLUDE=... -D FOLDER=... -D CC=... -D CXX=... -P header_test.cmake
#   CC, CXX    lists of compilers
#   FOLDER     for the source that is compiled
set(message "RVK_mod_scroll2D is for targets with pointers of 4 bytes: compile with -m32")
set(warnings -Wall -Wextra -Wpedantic -pedantic-errors -Wconversion -Wshadow -Wcast-qual -Wundef -Wredundant-decls -Werror)
set(source "#include <rvk/host_check.h>\nint missing(const HostRuntime*, const ExportRegistrar*);
int missing(const HostRuntime* h, const ExportRegistrar* e) { return rvk_missing_slot(h, 1) || rvk_missing_registrar_slot(e); }\n")
file(WRITE ${FOLDER}/host.c "${source}")
file(WRITE ${FOLDER}/host.cpp "${source}")

function(compile compiler file)
    execute_process(COMMAND ${compiler} -fsyntax-only -I ${INCLUDE} ${ARGN} ${FOLDER}/${file}
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(status "${status}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
    set(command "${compiler} ${ARGN} ${file}" PARENT_SCOPE)
endfunction()

function(check compiler file)
    foreach(standard IN LISTS ARGN)
        compile(${compiler} ${file} -m32 ${standard} ${warnings})
        if(NOT status STREQUAL 0 OR NOT output STREQUAL "")
            message(FATAL_ERROR "${command}\n${output}")
        endif()
        compile(${compiler} ${file} -m64 ${standard})
        string(FIND "${output}" "${message}" place)
        string(REGEX MATCHALL "error:" errors "${output}")
        list(LENGTH errors count)
        if(status STREQUAL 0 OR place EQUAL -1 OR NOT count EQUAL 1)
            message(FATAL_ERROR "${command}: not the one error \"${message}\"\n${output}")
        endif()
    endforeach()
endfunction()

foreach(compiler IN LISTS CC)
    check(${compiler} host.c -std=c99 -std=c11)
endforeach()
foreach(compiler IN LISTS CXX)
    check(${compiler} host.cpp -std=c++11 -std=c++20)
endforeach()
