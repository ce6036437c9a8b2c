#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

template <class Pixel>
void draw_parallax() {
    pscroll->mode == scroll_normal ? draw_both_planes<Pixel, OpaqueRules>()
                                   : draw_both_planes<Pixel, KeyedRules>();
}

}  // namespace

SCROLL2D_EACH_DEPTH(void, draw_scroll_parallax, (), draw_parallax<Pixel>();)

}  // namespace scroll2d
