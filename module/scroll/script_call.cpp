#include <cstdint>

#include "module/scroll/scroll.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

bool refuse(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value) {
    rvkre->RaiseError(code, function, 0, argument, value);
    return false;
}

std::int32_t fail(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value) {
    refuse(function, code, argument, value);
    return rvkre->ReturnInt(failure);
}

bool accept_region(const char* function, std::int32_t argument, std::int32_t region) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (region < -1 || region >= g.RegionCount()) return refuse(function, error_region, argument, region);
    if (region == -1) return true;
    if (g.RegionDefined(region) == 0) return refuse(function, error_region, argument, region);
    pregion_scroll2D = g.Regions + region;
    return true;
}

bool pop_scroll_range(const char* function, std::int32_t& number) {
    number = rvkre->PopInt();
    return is_scroll_range(number) || refuse(function, error_scroll_number, 1, number);
}

}  // namespace scroll2d
