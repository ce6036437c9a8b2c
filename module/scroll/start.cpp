#include <algorithm>
#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/contract/numbers.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
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

bool is_graph_number(std::int32_t graph) {
    return graph >= 0 && graph < max_graph_scroll2D;
}

// The tests in the order that scripts see; the first that fails is the one reported.
bool accepted(const Arguments& a) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (!is_scroll_number(a.num)) return refuse(name, error_scroll_number, 1, a.num);
    max_graph_scroll2D = graph_limit(a.file);
    if (a.file < 0 || a.file >= g.FileCount()) return refuse(name, error_file, 2, a.file);
    if (!is_graph_number(a.graph1)) return refuse(name, error_graph, 3, a.graph1);
    if (!is_graph_number(a.graph2)) return refuse(name, error_graph, 4, a.graph2);
    pfpg_scroll2D = g.GetFile(a.file);
    if (pfpg_scroll2D == nullptr || pfpg_scroll2D->word2 == 0)
        return refuse(name, error_empty_file, 2, a.file);
    if (!accept_region(name, 5, a.region)) return false;
    return a.mode >= scroll_normal && a.mode <= scroll_layers_key;  // a wrong mode fails without a report
}

// Looks up the maps and says how many planes the scroll gets: graph2 behind graph1, either of them alone
// where the other has no map, or none.
//   writes: pscroll, pfpgmap1_scroll2D, pfpgmap2_scroll2D; graph1 and graph2 of the record
std::int32_t choose_maps(const Arguments& a) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    select_scroll(a.num);
    pfpgmap1_scroll2D = pfpgmap2_scroll2D = nullptr;

    pfpgmap1_scroll2D = g.GetMap(a.file, a.graph1);
    if (usable_bitmap(pfpgmap1_scroll2D) == nullptr) {
        pfpgmap1_scroll2D = g.GetMap(a.file, a.graph2);
        if (usable_bitmap(pfpgmap1_scroll2D) == nullptr) return 0;
        pscroll->graph1 = a.graph2;
        pscroll->graph2 = 0;
        return 1;
    }
    pscroll->graph1 = a.graph1;
    pfpgmap2_scroll2D = g.GetMap(a.file, a.graph2);
    pscroll->graph2 = usable_bitmap(pfpgmap2_scroll2D) != nullptr ? a.graph2 : 0;
    return pscroll->graph2 != 0 ? 2 : 1;
}

// The view on the destination as it is now. A region turned inside out is raised to one pixel; a destination
// that has gone leaves nothing.
View starting_view(const ScrollRecord& r, const MapRecord* destination) {
    if (destination == nullptr) return {0, 0, 0, 0};
    if (r.region == -1) return view_of(nullptr, *destination);
    View view = view_of(pregion_scroll2D, *destination);
    view.width = std::max<std::int64_t>(view.width, 1);
    view.height = std::max<std::int64_t>(view.height, 1);
    return cut_to(view, *destination);
}

// Sets up one plane at its map's reference point, with a new buffer of the given size. False when there is no
// memory for the buffer.
bool set_up_plane(std::int32_t number, const MapRecord& map, BufferSize size) {
    ScrollRecord& r = *pscroll;
    const Plane plane = plane_of(r, number);
    const bool has_reference = map.cpoint_count != 0 && map.cpoints != nullptr;
    plane.x = has_reference ? map.cpoints[0].x : 0;
    plane.y = has_reference ? map.cpoints[0].y : 0;
    take_map(plane, map);

    plane.buffer = allocate_buffer(size);
    if (plane.buffer == nullptr) return false;
    plane.start = plane.buffer;
    own_buffers(r);

    if (plane.map_width < r.width) plane.flags |= plane.wrap_x_bit;
    if (plane.map_height < r.height) plane.flags |= plane.wrap_y_bit;
    set_scroll(number, plane.x, plane.y);
    return true;
}

std::int32_t start(const Arguments& a, std::int32_t planes) {
    ScrollRecord& r = *pscroll;
    if (r.active != 0) stop_scroll(a.num);

    r.file = a.file;
    r.flags = a.flags;
    r.region = a.region;
    r.mode = a.mode;
    store_view(r, starting_view(r, look_up_destination(r)));
    // Afresh: ending processes and looking maps up is the host's work, and it may move its data.
    select_scroll(a.num);
    if (stored_view(r).empty()) return fail(name, error_empty_view, 5, a.region);

    const BufferSize size = buffer_size(r);
    if (!set_up_plane(1, *pfpgmap1_scroll2D->bitmap, size)) return fail(name, error_no_memory, 0, size.bytes);
    if (planes == 2 && !set_up_plane(2, *pfpgmap2_scroll2D->bitmap, size)) {
        free_buffers(r);
        return fail(name, error_no_memory, 0, 0);
    }

    r.active = 1;
    r.planes = planes;
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
    if (!accepted(arguments)) return rvkre->ReturnInt(failure);
    const SelectionKept kept;
    const std::int32_t planes = choose_maps(arguments);
    if (planes == 0) return fail(name, error_no_map, 3, arguments.graph1);
    return start(arguments, planes);
}
