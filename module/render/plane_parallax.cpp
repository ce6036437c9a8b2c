#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/render/plane_routines.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

template <class Pixel>
void draw_parallax() {
    pscroll->mode == scroll_normal ? draw_both_planes<Pixel, OpaqueRules>()
                                   : draw_both_planes<Pixel, KeyedRules>();
}

}  // namespace

void draw_scroll_parallax_8bits() {
    draw_parallax<std::uint8_t>();
}
void draw_scroll_parallax_16bits() {
    draw_parallax<std::uint16_t>();
}
void draw_scroll_parallax_32bits() {
    draw_parallax<std::uint32_t>();
}

}  // namespace scroll2d
