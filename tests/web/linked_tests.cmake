# Where modules are linked: every test program has the module's objects in it, under two names.

# What asks for memory once more, by names that tests serve.
add_library(memory_asking_objects OBJECT ${CMAKE_SOURCE_DIR}/module/buffer/plane_buffers.cpp)
target_compile_options(memory_asking_objects PRIVATE
    $<TARGET_PROPERTY:scroll2d_objects,COMPILE_OPTIONS>
    -include ${CMAKE_CURRENT_SOURCE_DIR}/module/web/module_memory.h)
set(objects $<FILTER:$<TARGET_OBJECTS:scroll2d_objects>,EXCLUDE,plane_buffers>)

add_library(opened_module OBJECT model/inside.cpp web/linked_modules.cpp module/web/imports.cpp)

add_library(tested_module INTERFACE)
target_compile_definitions(tested_module INTERFACE
    SCROLL2D_MODULE="RVK_mod_scroll2D" SCROLL2D_OPENED_MODULE="opened_module")
target_sources(tested_module INTERFACE
    ${objects} $<TARGET_OBJECTS:memory_asking_objects> $<TARGET_OBJECTS:opened_module>)
# Linking is quick this way; the objects are optimised.
target_link_options(tested_module INTERFACE -O1)

add_test(NAME module_imports COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/module/web/imports.sh ${linked_module})

# What cannot be had here is named, and skipped: two ELF files, and modules that a loader loads or refuses.
foreach(test binary_test host_test)
    add_test(NAME ${test} COMMAND false)
    set_tests_properties(${test} PROPERTIES DISABLED TRUE)
endforeach()
