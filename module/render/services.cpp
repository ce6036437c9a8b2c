#include <cstdint>

#include "module/contract/numbers.h"
#include "module/render/render.h"
#include "module/scroll/view.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// A running scroll whose processes with this mask it shows, or null.
const ScrollRecord* running_scroll(std::int32_t scroll, std::int32_t mask) {
    if (!is_scroll_number(scroll) || scroll_sys[scroll].active == 0) return nullptr;
    return mask_shows(mask, scroll) ? &scroll_sys[scroll] : nullptr;
}

}  // namespace

std::int32_t GetScrollRegion(std::int32_t scroll, std::int32_t mask, std::int32_t x, std::int32_t y,
                             std::int32_t w, std::int32_t h, __RVKRegion__* out) {
    const ScrollRecord* const r = running_scroll(scroll, mask);
    if (out == nullptr || r == nullptr) return 0;
    const std::int64_t left = x + to_destination_x(*r);
    const std::int64_t top = y + to_destination_y(*r);
    *out = {wrap32(left), wrap32(left + w - 1), wrap32(top), wrap32(top + h - 1)};
    return 1;
}

std::int32_t GetScrollPoint(std::int32_t scroll, std::int32_t mask, __RVKPoint2D__* out) {
    const ScrollRecord* const r = running_scroll(scroll, mask);
    if (out == nullptr || r == nullptr) return 0;
    *out = {wrap32(to_destination_x(*r)), wrap32(to_destination_y(*r))};
    return 1;
}

std::int32_t GetScrollPos(std::int32_t scroll, std::int32_t mask, __RVKPoint2D__* plane1,
                          __RVKPoint2D__* plane2) {
    const ScrollRecord* const r = running_scroll(scroll, mask);
    if (r == nullptr || (plane1 == nullptr && plane2 == nullptr)) return 0;
    if (plane1 != nullptr) *plane1 = {r->plane1_x, r->plane1_y};
    if (plane2 != nullptr) *plane2 = {r->plane2_x, r->plane2_y};
    return 1;
}

std::int32_t GetProcessInScroll(std::int32_t scroll, std::int32_t mask) {
    return running_scroll(scroll, mask) != nullptr ? 1 : 0;
}

std::int32_t GetProcessOutScroll(std::int32_t scroll, std::int32_t mask) {
    return is_scroll_number(scroll) && !mask_shows(mask, scroll) ? 1 : 0;
}

}  // namespace scroll2d
