#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

constexpr char name[] = "SCROLL_SET_DESTINATION";

// In script order; the numbers are the argument indices of error reports.
struct Arguments {
    std::int32_t num;     // 1
    std::int32_t file;    // 2
    std::int32_t graph;   // 3
    std::int32_t region;  // 4
};

Arguments pop_arguments() {
    Arguments a{};
    a.region = rvkre->PopInt();
    a.graph = rvkre->PopInt();
    a.file = rvkre->PopInt();
    a.num = rvkre->PopInt();
    return a;
}

// The tests in the order that scripts see. The graph limit is that of file 0 for every file.
bool accepted(const Arguments& a) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (!is_scroll_range(a.num)) return refuse(name, error_destination_scroll_number, 1, a.num);
    if (a.file < 0 || a.file >= g.FileCount()) return refuse(name, error_file, 2, a.file);
    if (a.graph < 0 || a.graph >= g.SystemGraphCount()) return refuse(name, error_graph, 3, a.graph);
    return accept_region(name, 4, a.region);
}

// The bitmap that the script named: the screen for 0, 0; otherwise a map, or null where there is none.
MapRecord* choose_destination(const Arguments& a) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (a.file == 0 && a.graph == 0) return usable_bitmap(g.ScreenMap);
    if (a.graph == 0) return nullptr;
    pfpgmap_scroll2D = g.GetMap(a.file, a.graph);
    return usable_bitmap(pfpgmap_scroll2D);
}

// What an aim changes besides the buffers.
struct Aim {
    View view;
    std::int32_t file;
    std::int32_t graph;
    std::int32_t region;
    MapRecord* map;
};

Aim present_aim(const ScrollRecord& r) {
    return {stored_view(r), r.dest_file, r.dest_graph, r.region, r.dest_map};
}

void take_aim(ScrollRecord& r, const Aim& aim) {
    store_view(r, aim.view);
    r.dest_file = aim.file;
    r.dest_graph = aim.graph;
    r.region = aim.region;
    r.dest_map = aim.map;
}

// New buffers for a running scroll, filled from its maps as they are now. Where a map is missing or has
// become too small, the next draw that finds it fills them. False when there is no memory; nothing has
// changed then.
bool renew_running_scroll(ScrollRecord& r) {
    if (stored_view(r).empty()) return true;
    if (renew_buffers(r) != 0) return false;
    const MapState maps = look_up_plane_maps(r);
    if (maps == MapState::stopped) return true;
    if (maps != MapState::ready) disown_buffers(r);
    for (std::int32_t number = 1; number <= r.planes; ++number) {
        const Plane plane = plane_of(r, number);
        set_scroll(number, plane.x, plane.y);
    }
    return true;
}

// Aims one scroll at a bitmap; a view that would be empty there leaves it where it was.
// Returns how many scrolls were aimed, or -1 without memory: then this scroll stays as it was.
std::int32_t aim_scroll(ScrollRecord& r, const Arguments& a, MapRecord* map, const View& view) {
    const Aim old = present_aim(r);
    if (!view.empty()) take_aim(r, {view, a.file, a.graph, a.region, map});
    if (r.active != 0 && !renew_running_scroll(r)) {
        take_aim(r, old);
        return -1;
    }
    return view.empty() ? 0 : 1;
}

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_scroll_set_destination() {
    using namespace scroll2d;
    const Arguments a = pop_arguments();
    if (!accepted(a)) return rvkre->ReturnInt(failure);
    MapRecord* const map = choose_destination(a);
    if (map == nullptr) return rvkre->ReturnInt(0);

    const View view = cut_to(view_of(a.region == -1 ? nullptr : pregion_scroll2D, *map), *map);
    const SelectionKept kept;
    const ScrollRange range = scroll_range(a.num);
    std::int32_t aimed = 0;
    for (std::int32_t i = range.first; i <= range.last; ++i) {
        select_scroll(i);
        const std::int32_t result = aim_scroll(*pscroll, a, map, view);
        if (result < 0) return fail(name, error_no_memory, 0, 0);
        aimed += result;
    }
    return rvkre->ReturnInt(aimed);
}
