#include "module/scroll/script_call.h"

#include <cstdint>

#include "module/state/host_lookups.h"

namespace scroll2d {

bool refuse(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value) {
    rvkre->RaiseError(code, function, 0, argument, value);
    return false;
}

std::int32_t fail(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value) {
    refuse(function, code, argument, value);
    return rvkre->ReturnInt(failure);
}

bool accept_region(const char* function, std::int32_t argument, std::int32_t number,
                   const __RVKRegion__*& region) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (number < -1 || number >= g.RegionCount()) return refuse(function, error_region, argument, number);
    if (number == -1) return true;
    if (g.RegionDefined(number) == 0) return refuse(function, error_region, argument, number);
    region = pregion_scroll2D = g.Regions + number;
    return true;
}

std::int32_t serve_scrolls(const char* function, Served (*serve)()) {
    const std::int32_t number = rvkre->PopInt();
    if (!is_scroll_range(number)) return fail(function, error_scroll_number, 1, number);
    const std::int32_t count = walk_scrolls(number, serve);
    return rvkre->ReturnInt(count < 0 ? 0 : count);
}

}  // namespace scroll2d
