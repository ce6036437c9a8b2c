#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// Takes a changed file number from the script. A number equal to FileCount() is left to GetFile to refuse.
bool take_file() {
    const Graphics2DInterface& g = *rvkre->Graphics;
    const std::int32_t file = _scroll_->file;
    if (file == pscroll->file) return true;
    if (file < 0 || file > g.FileCount()) return false;
    pfpg_scroll2D = g.GetFile(file);
    if (pfpg_scroll2D == nullptr) return false;
    pscroll->file = file;
    return true;
}

// Takes a positive map code from the script, then the map with its new sizes, and fills the plane from it
// where it stands. False when there is no such map; the new code is on record even then. Does nothing more
// once the host has stopped the scroll.
bool refresh_plane(std::int32_t number) {
    const Plane plane = plane_of(*pscroll, number);
    const std::int32_t wanted = script_plane_of(*_scroll_, number).graph;
    if (wanted > 0) plane.graph = wanted;
    plane.entry = rvkre->Graphics->GetMap(pscroll->file, plane.graph);
    if (pscroll->active == 0) return true;
    const MapRecord* const map = usable_bitmap(plane.entry);
    if (map == nullptr) return false;
    take_map(plane, *map);
    set_scroll(number, plane.x, plane.y);
    script_plane_of(*_scroll_, number).graph = plane.graph;
    return true;
}

bool refresh() {
    if (!take_file()) return false;
    for (std::int32_t number = 1; number <= pscroll->planes && pscroll->active != 0; ++number) {
        if (!refresh_plane(number)) return false;
    }
    if (pscroll->active != 0 && !buffers_fit(*pscroll)) {
        // The depth has changed: nothing could be filled until all maps were known.
        make_buffers_fit(*pscroll);
        mirror_positions();
    }
    return true;
}

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_scroll_refresh() {
    using namespace scroll2d;
    std::int32_t number;
    if (!pop_scroll_range("SCROLL_REFRESH", number)) return rvkre->ReturnInt(failure);
    const SelectionKept kept;
    const ScrollRange range = scroll_range(number);
    std::int32_t refreshed = 0;
    for (std::int32_t i = range.first; i <= range.last; ++i) {
        select_scroll(i);
        if (pscroll->active == 0) continue;
        if (!refresh()) return rvkre->ReturnInt(0);
        if (pscroll->active != 0) ++refreshed;
    }
    return rvkre->ReturnInt(refreshed);
}
