#include <cstdint>

#include "module/contract/numbers.h"
#include "module/render/render.h"
#include "module/scroll/scroll.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

__RVKBlit2D__* pbltScroll2D;

namespace {

// Adds the current scroll to the host's current list, with its view as it stands on record.
void add_scroll_entry(std::int32_t number) {
    pbltScroll2D = rvkre->Graphics->NewBlit();
    if (pbltScroll2D == nullptr) return;
    const ScrollRecord& r = *pscroll;
    __RVKBlit2D__& entry = *pbltScroll2D;
    entry.id = number;
    entry.owner = nullptr;
    entry.x = r.dest_x;
    entry.x2 = wrap32(std::int64_t{r.dest_x} + r.width - 1);
    entry.y = r.dest_y;
    entry.y2 = wrap32(std::int64_t{r.dest_y} + r.height - 1);
    entry.z = _scroll_->z;
    entry.has_clip = 0;
    entry.draw = BlitScroll2D;
}

// Moves the current scroll, then draws what belongs behind its sprites. False when the host has stopped it
// meanwhile.
//
//   planes   mode                  drawn here                 plane 1 among the sprites
//   1        0 scroll_normal       plane 1 opaque             no
//   1        2 scroll_normal_key   plane 1 keyed              no
//   1        1, 3 layer modes      nothing                    yes
//   2        0, 2 normal modes     both planes, in one pass   no
//   2        1, 3 layer modes      plane 2                    yes
//
// A record's planes are 1 or 2 and its mode 0 to 3: nothing else passes scroll_start.
bool draw_scroll() {
    move_scroll(pscroll->planes);
    if (!fit_to_draw(*pscroll)) return false;
    if (pscroll->planes == 1) {
        if (pscroll->mode == scroll_normal) draw_scroll_simple();
        if (pscroll->mode == scroll_normal_key) draw_scroll_layer_plane1(nullptr);
    } else if (is_layer_mode(pscroll->mode)) {
        draw_scroll_layer_plane2(nullptr);
    } else {
        draw_scroll_parallax();
    }
    return true;
}

}  // namespace

void do_scrolls() {
    if (rvkre->Graphics->SelectBlitList(nullptr) == 0) return;
    for (std::int32_t i = scroll_count - 1; i >= 0; --i) {
        select_scroll(i);
        if (_scroll_->visible <= 0 || pscroll->active == 0 || look_up_destination(*pscroll) == nullptr)
            continue;
        add_scroll_entry(i);
    }
}

std::int32_t BlitScroll2D(__RVKBlit2D__* blit) {
    if (blit == nullptr || !is_scroll_number(blit->id)) return 0;
    const SelectionKept kept;
    select_scroll(blit->id);
    if (pscroll->active == 0) return 0;
    if (look_up_plane_maps(*pscroll) != MapState::ready) return 0;
    if (look_up_destination(*pscroll) == nullptr) return 0;
    // Afresh: looking maps up is the host's work, and it may move its data.
    select_scroll(scroll_num);
    if (!bring_view_up_to_date() || !draw_scroll()) return 0;
    draw_scroll_sprites(blit);
    blit->drawn = 1;
    return 1;
}

}  // namespace scroll2d
