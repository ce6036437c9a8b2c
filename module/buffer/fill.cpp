#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/buffer/check_ring.h"
#include "module/buffer/map_copy.h"
#include "module/contract/numbers.h"
#include "module/state/plane.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// The whole view from the map, laid out from the buffer's beginning; the extra row is not written.
template <class Pixel>
void fill(std::int32_t number, std::int32_t x, std::int32_t y) {
    ScrollRecord& r = *pscroll;
    const Plane plane(r, number);
    if (!buffers_fit(r)) return;

    plane.x() = wrap32(clamp_position(x, plane.wraps_x(), r.width, plane.map_width()));
    plane.y() = wrap32(clamp_position(y, plane.wraps_y(), r.height, plane.map_height()));
    plane.start() = plane.buffer();
    plane.rows_to_wrap() = r.height;

    copy_from_map(plane.map(), {plane.x(), plane.y(), r.width, r.height}, sizeof(Pixel), plane.buffer(),
                  r.width);
    check_filled(number);
}

}  // namespace

void set_scroll(std::int32_t plane, std::int32_t x, std::int32_t y) {
    setting_scroll(plane, x, y);
    _scroll_->x0 = pscroll->plane1_x;
    _scroll_->y0 = pscroll->plane1_y;
    _scroll_->x1 = pscroll->plane2_x;
    _scroll_->y1 = pscroll->plane2_y;
}

SCROLL2D_EACH_DEPTH(void, setting_scroll, (std::int32_t plane, std::int32_t x, std::int32_t y),
                    fill<Pixel>(plane, x, y);)

}  // namespace scroll2d
