#include "module/entry/lifecycle.h"

#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/render/render.h"
#include "module/render/vector_unit.h"
#include "module/scroll/scroll.h"
#include "module/state/host_lookups.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

void reset_record(ScrollRecord& r, MapRecord* screen) {
    r.active = 0;
    r.planes = 0;
    r.file = 0;
    r.graph1 = 0;
    r.graph2 = 0;
    r.alpha = 255;
    r.width = 0;
    r.height = 0;
    r.buffer1 = r.start1 = nullptr;
    r.buffer2 = r.start2 = nullptr;
    r.map1_pixels = r.map2_pixels = nullptr;
    r.dest_file = 0;
    r.dest_graph = 0;
    r.dest_map = screen;
}

}  // namespace
}  // namespace scroll2d

void RVK_mod_scroll2D_init() {
    using namespace scroll2d;
    Graphics2DInterface& g = *rvkre->Graphics;
    RVK_mod_scroll2D_release();  // a host may begin anew without unloading the module
    scrollSystem = {BlitScroll2D,       GetScrollRegion,     GetScrollPoint, GetScrollPos,
                    GetProcessInScroll, GetProcessOutScroll, StopScroll,     StopAllScroll};
    g.ScrollSystem = &scrollSystem;
    scroll2D_blitlist = g.CreateBlitList("SCROLL2D", 256, 256);
    for (ScrollRecord& r : scroll_sys) reset_record(r, g.ScreenMap);
    _scroll_offset_ = rvkre->GlobalOffset(0, "scroll.camera");
    set_scroll2D_drawing_routines();
    find_vector_units();
}

void RVK_mod_scroll2D_frame() {
    if (*rvkre->FrameState->suspend_flag == 0) scroll2d::do_scrolls();
}

void RVK_mod_scroll2D_update() {
    using namespace scroll2d;
    const Graphics2DInterface& g = *rvkre->Graphics;
    for (ScrollRecord& r : scroll_sys) {
        if (r.dest_file == 0 && r.dest_graph == 0) r.dest_map = g.ScreenMap;
    }
    if (g.Video->reset_flag != 0) g.ScrollSystem->StopAllScroll();
    set_scroll2D_drawing_routines();
}

void RVK_mod_scroll2D_release() {
    using namespace scroll2d;
    for (std::int32_t i = scroll_count - 1; i >= 0; --i) {
        if (scroll_sys[i].active != 0) free_buffers(scroll_sys[i]);
    }
}
