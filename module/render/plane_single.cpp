#include <cstdint>

#include "module/render/plane_drawing.h"
#include "module/state/routine_pointers.h"

namespace scroll2d {

SCROLL2D_EACH_DEPTH(void, draw_scroll_simple, (), draw_front_plane<Pixel, OpaqueRules>();)

}  // namespace scroll2d
