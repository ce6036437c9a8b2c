# The module through the shared object, as a host loads it.
add_custom_target(scroll2d_module_tests)

# scroll2d_module_test(name source...): a test program that loads the module from SCROLL2D_MODULE.
function(scroll2d_module_test name)
    scroll2d_test(${name} ${ARGN})
    target_compile_definitions(${name} PRIVATE SCROLL2D_MODULE="$<TARGET_FILE:RVK_mod_scroll2D>")
    # Thousands of assertions compile for minutes when each is optimised and instrumented in place.
    target_compile_definitions(${name} PRIVATE DOCTEST_CONFIG_SUPER_FAST_ASSERTS)
    target_compile_options(${name} PRIVATE -O0 -fno-sanitize=undefined)
    add_dependencies(${name} RVK_mod_scroll2D)
    add_dependencies(scroll2d_module_tests ${name})
endfunction()

scroll2d_module_test(registration_test module/registration_test.cpp)
scroll2d_module_test(contract_test module/contract_test.cpp)
scroll2d_module_test(limits_test module/limits_test.cpp module/allocation.cpp)

scroll2d_module_test(binary_test module/binary_test.cpp)
target_compile_definitions(binary_test PRIVATE
    SCROLL2D_EXPORTS="${CMAKE_SOURCE_DIR}/module/entry/exports.map"
    SCROLL2D_SHIPS=$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:${SCROLL2D_SANITIZE}>>>)
