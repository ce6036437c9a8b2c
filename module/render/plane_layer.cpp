#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/render/plane_routines.h"
#include "module/scroll/view.h"
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

using Blit = __RVKBlit2D__*;

std::int32_t draw_scroll_layer_plane1_8bits(Blit) {
    return draw_plane1<std::uint8_t>();
}
std::int32_t draw_scroll_layer_plane1_16bits(Blit) {
    return draw_plane1<std::uint16_t>();
}
std::int32_t draw_scroll_layer_plane1_32bits(Blit) {
    return draw_plane1<std::uint32_t>();
}

std::int32_t draw_scroll_layer_plane2_8bits(Blit) {
    return draw_plane2<std::uint8_t>();
}
std::int32_t draw_scroll_layer_plane2_16bits(Blit) {
    return draw_plane2<std::uint16_t>();
}
std::int32_t draw_scroll_layer_plane2_32bits(Blit) {
    return draw_plane2<std::uint32_t>();
}

}  // namespace scroll2d
