# Does what the host author's guide says, line by line, from an empty folder to the picture.
#
# cmake -D ROOT=... -D FOLDER=... -D REFERENCE=... -P host_guide_test.cmake
#   FOLDER     is emptied
#   REFERENCE  the picture that must come out
file(READ ${ROOT}/docs/host-authors.md guide)
string(REGEX MATCHALL "```sh\n[^`]*```" blocks "${guide}")
list(LENGTH blocks count)
if(NOT count EQUAL 3)
    message(FATAL_ERROR "the guide has ${count} blocks of shell lines, not 3: packages, SDK, host")
endif()
list(REMOVE_AT blocks 0) # the packages are here, or nothing would have been built
string(REGEX REPLACE "```(sh\n)?;?" "" lines "${blocks}")
string(REGEX REPLACE "src=[^ \n]*" "src='${ROOT}'" lines "${lines}")

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(WRITE ${FOLDER}.sh "${lines}")
execute_process(COMMAND sh -e ${FOLDER}.sh WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${lines}\n${output}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${FOLDER}/picture.ppm ${REFERENCE} COMMAND_ERROR_IS_FATAL ANY)
