#include <cstdint>

#include "scroll/scroll.h"
#include "scroll/scroll_table.h"

namespace scroll2d {

std::int32_t fail(std::int32_t code, const char* function, std::int32_t argument, std::int32_t value) {
    rvkre->RaiseError(code, function, 0, argument, value);
    return rvkre->ReturnInt(failure);
}

bool pop_scroll_range(const char* function, std::int32_t& number) {
    number = rvkre->PopInt();
    if (is_scroll_range(number)) return true;
    rvkre->RaiseError(error_scroll_number, function, 0, 1, number);
    return false;
}

}  // namespace scroll2d
