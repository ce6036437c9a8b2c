#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/render/plane_routines.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

void draw_scroll_simple_8bits() {
    draw_front_plane<std::uint8_t, OpaqueRules>();
}
void draw_scroll_simple_16bits() {
    draw_front_plane<std::uint16_t, OpaqueRules>();
}
void draw_scroll_simple_32bits() {
    draw_front_plane<std::uint32_t, OpaqueRules>();
}

}  // namespace scroll2d
