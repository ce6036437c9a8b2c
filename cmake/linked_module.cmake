# A browser has no loader. There the module is one object, which programs link: host/linked_modules.h.

set(linked_module ${CMAKE_BINARY_DIR}/RVK_mod_scroll2D.o)
add_custom_command(OUTPUT ${linked_module}
    COMMAND wasm-ld -r $<TARGET_OBJECTS:scroll2d_objects> -o ${linked_module}
    DEPENDS scroll2d_objects $<TARGET_OBJECTS:scroll2d_objects>
    COMMAND_EXPAND_LISTS VERBATIM)
add_custom_target(RVK_mod_scroll2D ALL DEPENDS ${linked_module})
