# The module through the shared object, as a host loads it.
add_custom_target(scroll2d_module_tests)

# scroll2d_module_test(name source...): a test program that loads the module from SCROLL2D_MODULE.
function(scroll2d_module_test name)
    scroll2d_test(${name} ${ARGN})
    target_compile_definitions(${name} PRIVATE SCROLL2D_MODULE="$<TARGET_FILE:RVK_mod_scroll2D>")
    add_dependencies(${name} RVK_mod_scroll2D)
    add_dependencies(scroll2d_module_tests ${name})
endfunction()

scroll2d_module_test(registration_test registration_test.cpp)
scroll2d_module_test(start_test start_test.cpp)
scroll2d_module_test(stop_test stop_test.cpp)
