# Links the module as a shared object.

set_target_properties(RVK_mod_scroll2D PROPERTIES LINK_DEPENDS ${module_exports})
target_link_options(RVK_mod_scroll2D PRIVATE
    -Wl,--version-script=${module_exports} -Wl,-z,defs -Wl,--gc-sections
    # Code and constants share their pages; apart, they would be filled up with zeros.
    -Wl,-z,noseparate-code
    # Other modules of a host may export names of their own like ours.
    -Wl,-Bsymbolic)
if(SCROLL2D_SANITIZE)
    # The sanitizers' runtime comes with the program that loads the module.
    target_link_options(RVK_mod_scroll2D PRIVATE -Wl,-z,undefs)
else()
    # No C++ runtime; of libgcc only the static part (64-bit division, the processor check).
    target_link_options(RVK_mod_scroll2D PRIVATE -nodefaultlibs)
    target_link_libraries(RVK_mod_scroll2D PRIVATE c gcc)
endif()
