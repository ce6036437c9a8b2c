// The module under the two names by which tests know it, and all that it shows under each.
#include "host/linked_modules.h"

#include "module/entry/lifecycle.h"
#include "module/entry/registration.h"
#include "module/scroll/scroll.h"
#include "module/state/host_lookups.h"
#include "tests/model/inside.h"

extern "C" const model::Inside scroll2d_inside;

namespace {

#define SYMBOL(module, name) \
    { module, #name, (void*)(&name) }
#define SYMBOLS(module)                                                                                     \
    SYMBOL(module, RVK_mod_scroll2D_MainLibraryExports),                                                    \
        SYMBOL(module, RVK_mod_scroll2D_MainLibraryDependencies), SYMBOL(module, rvkre),                    \
        SYMBOL(module, RVK_mod_scroll2D_init), SYMBOL(module, RVK_mod_scroll2D_frame),                      \
        SYMBOL(module, RVK_mod_scroll2D_update), SYMBOL(module, RVK_mod_scroll2D_release),                  \
        SYMBOL(module, RVK_scroll_start), SYMBOL(module, RVK_scroll_stop), SYMBOL(module, RVK_scroll_move), \
        SYMBOL(module, RVK_scroll_refresh), SYMBOL(module, RVK_scroll_set_destination)

const host::LinkedSymbol symbols[] = {
    SYMBOLS("RVK_mod_scroll2D"),
    SYMBOLS("opened_module"),
    SYMBOL("opened_module", scroll2d_inside),
};

}  // namespace

const std::span<const host::LinkedSymbol> host::linked_symbols = symbols;
