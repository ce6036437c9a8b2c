#include "module/entry/registration.h"

#include <cstdint>

#include "module/contract/script_numbers.h"
#include "module/entry/lifecycle.h"
#include "module/scroll/scroll.h"
#include "module/state/host_lookups.h"

const char* RVK_mod_scroll2D_MainLibraryDependencies[] = {"RVK_mod_graphics2D", nullptr};

namespace scroll2d {
namespace {

// The layout of ScrollScriptStruct and its defaults, as the host's compiler reads them.
constexpr char script_globals[] =
    "struct scroll[10] "
    "int camera  = 0;"
    "int ratio   = 200;"
    "int file    = 0;"
    "int graph1  = 0;"
    "int graph2  = 0;"
    "int region1 = -1;"
    "int region2 = -1;"
    "int speed   = 0;"
    "int x0      = 0;"
    "int y0      = 0;"
    "int x1      = 0;"
    "int y1      = 0;"
    "int z       = 512;"
    "int alpha   = 255;"
    "int visible = 1;"
    "end ";

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_mod_scroll2D_MainLibraryExports(const ExportRegistrar* registrar) {
    using namespace scroll2d;
    // The host copies each table during the call; it never holds an address of the module's own data.
    const ConstantRow constants[] = {
        {"c_scroll", c_scroll},
        {"all_scroll", all_scroll},
        {"scroll_normal", scroll_normal},
        {"scroll_layers", scroll_layers},
        {"scroll_normal_key", scroll_normal_key},
        {"scroll_layers_key", scroll_layers_key},
        {nullptr, 0},
    };
    registrar->RegisterConstants(constants);
    registrar->RegisterGlobals(script_globals);
    const FunctionRow functions[] = {
        {"move_scroll(I)", "I", 0, RVK_scroll_move},
        {"refresh_scroll(I)", "I", 0, RVK_scroll_refresh},
        {"start_scroll(I,I,I,I,I,I)", "I", 0, RVK_scroll_start},
        {"start_scroll(I,I,I,I,I,I,I)", "I", 0, RVK_scroll_start},
        {"stop_scroll(I)", "I", 0, RVK_scroll_stop},
        {"scroll_move(I)", "I", 0, RVK_scroll_move},
        {"scroll_refresh(I)", "I", 0, RVK_scroll_refresh},
        {"scroll_set_destination(I,I,I,I)", "I", 0, RVK_scroll_set_destination},
        {"scroll_start(I,I,I,I,I,I)", "I", 0, RVK_scroll_start},
        {"scroll_start(I,I,I,I,I,I,I)", "I", 0, RVK_scroll_start},
        {"scroll_stop(I)", "I", 0, RVK_scroll_stop},
        {nullptr, nullptr, 0, nullptr},
    };
    registrar->RegisterFunctions(functions);
    const HookRow hooks[] = {
        {1, RVK_mod_scroll2D_init},
        {2, RVK_mod_scroll2D_frame},
        {3, RVK_mod_scroll2D_update},
        {4, RVK_mod_scroll2D_release},
        {0, nullptr},
    };
    registrar->RegisterHooks(hooks);
    rvkre = registrar->GetRuntime();
    return 1;
}
