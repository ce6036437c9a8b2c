#include <cstdint>

#include "render/plane_drawing.h"
#include "render/plane_routines.h"
#include "scroll/scroll_table.h"

namespace scroll2d {
namespace {

template <class Pixel>
void draw_simple() {
    draw_plane<Pixel>(1, Coverage::opaque, pscroll->alpha);
}

}  // namespace

void draw_scroll_simple_8bits() {
    draw_simple<std::uint8_t>();
}
void draw_scroll_simple_16bits() {
    draw_simple<std::uint16_t>();
}
void draw_scroll_simple_32bits() {
    draw_simple<std::uint32_t>();
}

}  // namespace scroll2d
