#include <algorithm>
#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/scroll/rebuild.h"
#include "module/scroll/script_call.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/plane.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

constexpr char name[] = "SCROLL_START";

// In script order; the numbers are the argument indices of error reports.
struct Arguments {
    std::int32_t num;     // 1
    std::int32_t file;    // 2
    std::int32_t graph1;  // 3
    std::int32_t graph2;  // 4
    std::int32_t region;  // 5
    std::int32_t flags;   // 6
    std::int32_t mode;    // 7, or scroll_normal in the form with six
};

Arguments pop_arguments() {
    Arguments a{};
    a.mode = rvkre->ParamCount() == 7 ? rvkre->PopInt() : scroll_normal;
    a.flags = rvkre->PopInt();
    a.region = rvkre->PopInt();
    a.graph2 = rvkre->PopInt();
    a.graph1 = rvkre->PopInt();
    a.file = rvkre->PopInt();
    a.num = rvkre->PopInt();
    return a;
}

// The tests in the order that scripts see; the first that fails is the one reported. `region` stays null for
// the whole destination.
bool accepted(const Arguments& a, const __RVKRegion__*& region) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (!is_scroll_number(a.num)) return refuse(name, error_scroll_number, 1, a.num);
    const std::int32_t graphs = max_graph_scroll2D = graph_limit(a.file);
    if (a.file < 0 || a.file >= g.FileCount()) return refuse(name, error_file, 2, a.file);
    if (a.graph1 < 0 || a.graph1 >= graphs) return refuse(name, error_graph, 3, a.graph1);
    if (a.graph2 < 0 || a.graph2 >= graphs) return refuse(name, error_graph, 4, a.graph2);
    const FileRecord* const file = pfpg_scroll2D = g.GetFile(a.file);
    if (file == nullptr || file->word2 == 0) return refuse(name, error_empty_file, 2, a.file);
    if (!accept_region(name, 5, a.region, region)) return false;
    return a.mode >= scroll_normal && a.mode <= scroll_layers_key;  // a wrong mode fails without a report
}

// The maps that a scroll shows: graph2 behind graph1, or either of them alone where the other has no map.
struct Maps {
    const MapEntry* front = nullptr;
    const MapEntry* back = nullptr;
};

// Looks the maps up for the current scroll.
//   writes: pfpgmap1_scroll2D, pfpgmap2_scroll2D; graph1 and graph2 of the record
Maps choose_maps(const Arguments& a) {
    ScrollRecord& r = *pscroll;
    pfpgmap1_scroll2D = pfpgmap2_scroll2D = nullptr;
    if (look_up_map(pfpgmap1_scroll2D, a.file, a.graph1) == nullptr) {
        if (look_up_map(pfpgmap1_scroll2D, a.file, a.graph2) == nullptr) return {};
        r.graph1 = a.graph2;
        r.graph2 = 0;
        return {.front = pfpgmap1_scroll2D};
    }
    r.graph1 = a.graph1;
    r.graph2 = look_up_map(pfpgmap2_scroll2D, a.file, a.graph2) != nullptr ? a.graph2 : 0;
    return {.front = pfpgmap1_scroll2D, .back = r.graph2 != 0 ? pfpgmap2_scroll2D : nullptr};
}

// The view on the destination as it is now. A region turned inside out is raised to one pixel; a destination
// that has gone leaves nothing.
View starting_view(const __RVKRegion__* region, const MapRecord* destination) {
    if (destination == nullptr) return {0, 0, 0, 0};
    View view = view_of(region, *destination);
    if (region == nullptr) return view;
    view.width = std::max<std::int64_t>(view.width, 1);
    view.height = std::max<std::int64_t>(view.height, 1);
    return cut_to(view, *destination);
}

// Sets up one plane of the current scroll at its map's reference point. False when there is no memory.
bool set_up_plane(std::int32_t number, const MapRecord& map) {
    ScrollRecord& r = *pscroll;
    const Plane plane(r, number);
    const bool has_reference = map.cpoint_count != 0 && map.cpoints != nullptr;
    plane.x() = has_reference ? map.cpoints[0].x : 0;
    plane.y() = has_reference ? map.cpoints[0].y : 0;
    take_map(plane, map);
    if (map.width < r.width) r.flags |= plane.wrap_x_bit();
    if (map.height < r.height) r.flags |= plane.wrap_y_bit();
    return rebuild({.only_plane = number, .mirrors = true});
}

std::int32_t start(const Arguments& a, const Maps& maps, const __RVKRegion__* region) {
    ScrollRecord& r = *pscroll;
    if (r.active != 0) stop_scroll(a.num);

    r.file = a.file;
    r.flags = a.flags;
    r.region = a.region;
    r.mode = a.mode;
    store_view(r, starting_view(region, look_up_destination(r)));
    // Afresh: ending processes and looking maps up is the host's work. It may move its data and take maps
    // away.
    select_scroll(a.num);
    const MapRecord* const front = usable_bitmap(maps.front);
    const MapRecord* const back = usable_bitmap(maps.back);
    if (stored_view(r).empty()) return fail(name, error_empty_view, 5, a.region);
    if (front == nullptr) return fail(name, error_no_map, 3, a.graph1);

    if (!set_up_plane(1, *front)) return fail(name, error_no_memory, 0, buffer_size(r).bytes);
    if (back != nullptr && !set_up_plane(2, *back)) {
        free_buffers(r);
        return fail(name, error_no_memory, 0, 0);
    }

    r.active = 1;
    r.planes = back != nullptr ? 2 : 1;
    if (back == nullptr) r.graph2 = 0;
    _scroll_->file = r.file;
    _scroll_->graph1 = r.graph1;
    _scroll_->graph2 = r.graph2;
    return rvkre->ReturnInt(a.num);
}

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_scroll_start() {
    using namespace scroll2d;
    const Arguments arguments = pop_arguments();
    const __RVKRegion__* region = nullptr;
    if (!accepted(arguments, region)) return rvkre->ReturnInt(failure);
    const SelectionKept kept;
    select_scroll(arguments.num);
    const Maps maps = choose_maps(arguments);
    if (maps.front == nullptr) return fail(name, error_no_map, 3, arguments.graph1);
    return start(arguments, maps, region);
}
