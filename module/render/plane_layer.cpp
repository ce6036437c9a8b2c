#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/scroll/view.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// A layer entry is drawn by the host among the sprites, and a sprite's routine may have stopped the scroll.
template <class Pixel>
std::int32_t draw_plane1() {
    if (fit_to_draw(*pscroll)) draw_front_plane<Pixel, KeyedRules>();
    return 1;
}

template <class Pixel>
std::int32_t draw_plane2() {
    const bool opaque = pscroll->mode == scroll_normal || pscroll->mode == scroll_layers;
    opaque ? draw_back_plane<Pixel, OpaqueRules>() : draw_back_plane<Pixel, KeyedRules>();
    return 1;
}

}  // namespace

SCROLL2D_EACH_DEPTH(std::int32_t, draw_scroll_layer_plane1, (__RVKBlit2D__*), return draw_plane1<Pixel>();)
SCROLL2D_EACH_DEPTH(std::int32_t, draw_scroll_layer_plane2, (__RVKBlit2D__*), return draw_plane2<Pixel>();)

}  // namespace scroll2d
