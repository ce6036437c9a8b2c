#include "module/scroll/rebuild.h"

#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/scroll/script_call.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/plane.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

constexpr char module_name[] = "RVK_mod_scroll2D";

// Tells the script once of each size that finds no memory, and not again at every frame.
void report_shortage(ScrollRecord& r, std::int32_t failed_plane) {
    const std::int32_t bytes = buffer_size(r).bytes;
    if (r.shortage_reported != 0 && r.shortage_bytes == bytes) return;
    r.shortage_reported = 1;
    r.shortage_bytes = bytes;
    refuse(module_name, error_no_memory, 0, failed_plane == 1 ? bytes : 0);
}

}  // namespace

bool rebuild(const Rebuild& how) {
    ScrollRecord& r = *pscroll;
    if (stored_view(r).empty()) return true;
    const std::int32_t first = how.only_plane == 0 ? 1 : how.only_plane;
    const std::int32_t last = how.only_plane == 0 ? r.planes : how.only_plane;
    const std::int32_t failed_plane = renew_buffers(r, first, last);
    if (failed_plane != 0) {
        if (how.reports) report_shortage(r, failed_plane);
        return false;
    }
    if (how.looks_up_maps) {
        const MapState maps = look_up_plane_maps(r);
        if (maps == MapState::stopped) return true;
        if (maps != MapState::ready) disown_buffers(r);
    }
    const auto fill = how.mirrors ? set_scroll : setting_scroll;
    for (std::int32_t number = first; number <= last; ++number) {
        const Plane plane(r, number);
        fill(number, plane.x(), plane.y());
    }
    return true;
}

}  // namespace scroll2d
