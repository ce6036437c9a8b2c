#include <algorithm>
#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/contract/numbers.h"
#include "module/scroll/rebuild.h"
#include "module/scroll/script_call.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/plane.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// One axis of a follow region, cut to the destination; inclusive, destination pixels.
struct Span {
    std::int64_t low;
    std::int64_t high;
};
Span span(std::int32_t low, std::int32_t high, std::int64_t destination_extent) {
    return {std::max<std::int64_t>(low, 0), std::min<std::int64_t>(high, destination_extent - 1)};
}

// Inner region: just far enough to bring the camera back to the edge; none inside. On a span turned inside
// out the high edge wins.
std::int64_t inner_movement(std::int64_t camera, Span inner) {
    if (camera > inner.high) return camera - inner.high;
    if (camera < inner.low) return camera - inner.low;
    return 0;
}

// Outer region: a camera outside is brought to the edge at once; inside, the movement wanted is made at no
// more than `speed` pixels when that is positive. On a span turned inside out the low edge wins.
std::int64_t outer_movement(std::int64_t camera, Span outer, std::int64_t wanted, std::int32_t speed) {
    if (camera < outer.low) return camera - outer.low;
    if (camera > outer.high) return camera - outer.high;
    if (speed <= 0) return wanted;
    return std::clamp<std::int64_t>(wanted, -std::int64_t{speed}, speed);
}

// A follow region that a script chose, or null for none.
const __RVKRegion__* follow_region(std::int32_t number) {
    return number >= 0 && number <= last_follow_region ? region_at(number) : nullptr;
}

struct Movement {
    std::int64_t x;
    std::int64_t y;
};

// The size of the destination, pixels; while it is gone, of what the view takes up of it.
struct Extent {
    std::int64_t width;
    std::int64_t height;
};
Extent destination_extent(ScrollRecord& r) {
    const MapRecord* const destination = look_up_destination(r);
    if (destination != nullptr) return {destination->width, destination->height};
    return {std::int64_t{r.dest_x} + r.width, std::int64_t{r.dest_y} + r.height};
}

// How far plane 1 has to move after the camera at (x, y), world pixels.
Movement movement_after(std::int32_t x, std::int32_t y) {
    ScrollRecord& r = *pscroll;
    const Extent destination = destination_extent(r);
    const std::int64_t ahead_x = std::int64_t{x} - r.plane1_x;  // of view pixel (0,0)
    const std::int64_t ahead_y = std::int64_t{y} - r.plane1_y;
    const std::int64_t destination_x = x + to_destination_x(r);
    const std::int64_t destination_y = y + to_destination_y(r);

    Movement move = {ahead_x - (r.width >> 1), ahead_y - (r.height >> 1)};  // centred
    if (const __RVKRegion__* inner = follow_region(_scroll_->region1)) {
        move.x = inner_movement(destination_x, span(inner->x, inner->x2, destination.width));
        move.y = inner_movement(destination_y, span(inner->y, inner->y2, destination.height));
    }
    if (const __RVKRegion__* outer = follow_region(_scroll_->region2)) {
        const std::int32_t speed = _scroll_->speed;
        move.x = outer_movement(destination_x, span(outer->x, outer->x2, destination.width), move.x, speed);
        move.y = outer_movement(destination_y, span(outer->y, outer->y2, destination.height), move.y, speed);
    }
    return move;
}

// Moves plane 1 after a live camera and plane 2 by what plane 1 really moved, scaled by the ratio.
void follow_camera(std::int32_t planes) {
    ScrollRecord& r = *pscroll;
    // A process id is the address of its data block.
    const auto* camera =
        reinterpret_cast<const ProcessLocals*>(static_cast<std::uintptr_t>(_scroll_->camera));
    const std::int32_t old_x = r.plane1_x;
    const std::int32_t old_y = r.plane1_y;
    const Movement move = movement_after(whole_pixels(camera->x, camera->resolution),
                                         whole_pixels(camera->y, camera->resolution));
    moving_scroll(1, move.x, move.y);
    if (planes == 2 && _scroll_->ratio != 0) {
        moving_scroll(2, scaled_movement(std::int64_t{r.plane1_x} - old_x, _scroll_->ratio),
                      scaled_movement(std::int64_t{r.plane1_y} - old_y, _scroll_->ratio));
    }
}

// Moves a plane to the position that the script wrote, when it wrote one.
void go_to_script_position(std::int32_t number) {
    const ConstPlane plane(*pscroll, number);
    const ScriptPlane wanted(*_scroll_, number);
    if (wanted.x() == plane.x() && wanted.y() == plane.y()) return;
    moving_scroll(number, std::int64_t{wanted.x()} - plane.x(), std::int64_t{wanted.y()} - plane.y());
}

// What a script's move does to one scroll. A map that has gone ends the call.
Served move() {
    if (pscroll->active == 0) return Served::left_out;
    const MapState maps = look_up_plane_maps(*pscroll);
    if (maps == MapState::gone) return Served::ended;
    if (maps != MapState::ready) return Served::left_out;
    if (!buffers_fit(*pscroll)) rebuild({});
    move_scroll(pscroll->planes);
    return pscroll->active != 0 ? Served::counted : Served::left_out;
}

}  // namespace

void move_scroll(std::int32_t planes) {
    _scroll_->alpha = std::clamp(_scroll_->alpha, 0, 255);
    pscroll->alpha = _scroll_->alpha;
    if (_scroll_->camera == 0) {
        go_to_script_position(1);
        if (planes == 2) go_to_script_position(2);
    } else if (rvkre->Processes->ProcessExists(_scroll_->camera) != 0 && pscroll->active != 0) {
        follow_camera(planes);
    }
}

}  // namespace scroll2d

std::int32_t RVK_scroll_move() {
    return scroll2d::serve_scrolls("SCROLL_MOVE", scroll2d::move);
}
