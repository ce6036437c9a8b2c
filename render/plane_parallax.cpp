#include <cstdint>

#include "render/plane_drawing.h"
#include "render/plane_routines.h"
#include "render/routine_pointers.h"
#include "scroll/scroll_table.h"

namespace scroll2d {
namespace {

// The front plane is always keyed, the back plane in every mode but scroll_normal. Each takes the rule of its
// own map's alpha flag. With a scroll alpha the planes are drawn one after the other instead.
template <class Pixel>
void draw_parallax() {
    ScrollRecord& r = *pscroll;
    if (has_scroll_alpha<Pixel> && r.alpha != 255) {
        draw_scroll_layer_plane2(nullptr);
        draw_scroll_layer_plane1(nullptr);
        return;
    }
    const Coverage back_coverage = r.mode == scroll_normal ? Coverage::opaque : Coverage::keyed;
    const Plane front = plane_of(r, 1);
    const Plane back = plane_of(r, 2);
    with_plane_rule<Pixel>(back_coverage, back.map_alpha_flag, [&](auto back_rule) {
        const auto draw = [&](auto front_rule) {
            draw_rows<Pixel>(r, front, back,
                             Stacked<decltype(front_rule), decltype(back_rule)>{front_rule, back_rule});
        };
        with_keyed_rule<Pixel>(front.map_alpha_flag, draw);
    });
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
