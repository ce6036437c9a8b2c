#include <cstdint>

#include "module/scroll/rebuild.h"
#include "module/scroll/script_call.h"
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
bool accepted(const Arguments& a, const __RVKRegion__*& region) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (!is_scroll_range(a.num)) return refuse(name, error_destination_scroll_number, 1, a.num);
    if (a.file < 0 || a.file >= g.FileCount()) return refuse(name, error_file, 2, a.file);
    if (a.graph < 0 || a.graph >= g.SystemGraphCount()) return refuse(name, error_graph, 3, a.graph);
    return accept_region(name, 4, a.region, region);
}

// The bitmap that the script named: the screen for 0, 0; otherwise a map, or null where there is none.
MapRecord* choose_destination(const Arguments& a) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (a.file == 0 && a.graph == 0) return usable_bitmap(g.ScreenMap);
    if (a.graph == 0) return nullptr;
    return look_up_map(pfpgmap_scroll2D, a.file, a.graph);
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

// Gives the current scroll a new aim; a view that would be empty leaves it where it was. Without memory for
// its buffers it stays as it was, and the call ends.
Served aim_scroll(const Aim& aim) {
    ScrollRecord& r = *pscroll;
    const Aim old = present_aim(r);
    const bool seen = !aim.view.empty();
    if (seen) take_aim(r, aim);
    if (r.active != 0 && !rebuild({.looks_up_maps = true, .mirrors = true})) {
        take_aim(r, old);
        return Served::ended;
    }
    return seen ? Served::counted : Served::left_out;
}

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_scroll_set_destination() {
    using namespace scroll2d;
    const Arguments a = pop_arguments();
    const __RVKRegion__* region = nullptr;
    if (!accepted(a, region)) return rvkre->ReturnInt(failure);
    MapRecord* const map = choose_destination(a);
    if (map == nullptr) return rvkre->ReturnInt(0);

    const Aim aim = {cut_to(view_of(region, *map), *map), a.file, a.graph, a.region, map};
    const std::int32_t aimed = walk_scrolls(a.num, [&] { return aim_scroll(aim); });
    return aimed < 0 ? fail(name, error_no_memory, 0, 0) : rvkre->ReturnInt(aimed);
}
