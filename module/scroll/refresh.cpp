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
    const Plane plane(*pscroll, number);
    const std::int32_t wanted = ScriptPlane(*_scroll_, number).graph();
    if (wanted > 0) plane.graph() = wanted;
    const MapRecord* const map = look_up_map_of_plane(*pscroll, number);
    if (pscroll->active == 0) return true;
    if (map == nullptr) return false;
    take_map(plane, *map);
    set_scroll(number, plane.x(), plane.y());
    ScriptPlane(*_scroll_, number).graph() = plane.graph();
    return true;
}

Served refresh() {
    if (pscroll->active == 0) return Served::left_out;
    if (!take_file()) return pscroll->active != 0 ? Served::ended : Served::left_out;
    for (std::int32_t number = 1; number <= pscroll->planes && pscroll->active != 0; ++number) {
        if (!refresh_plane(number)) return Served::ended;
    }
    if (pscroll->active == 0) return Served::left_out;
    // After a change of depth nothing could be filled until all maps were known.
    if (!buffers_fit(*pscroll)) rebuild({.mirrors = true});
    return Served::counted;
}

}  // namespace
}  // namespace scroll2d

std::int32_t RVK_scroll_refresh() {
    return scroll2d::serve_scrolls("SCROLL_REFRESH", scroll2d::refresh);
}
