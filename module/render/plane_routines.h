// The plane drawing routines of every depth. Called through the pointers of routine_pointers.h alone.
// All read the current scroll (pscroll), whose buffers hold the view and whose view lies inside dest_map, and
// write destination pixels inside the view only.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace scroll2d {

// ---- plane_single.cpp: plane 1 alone, covering its whole view. Every routine returns nothing.
void draw_scroll_simple_8bits();
void draw_scroll_simple_16bits();
void draw_scroll_simple_32bits();

// ---- plane_parallax.cpp: the front plane keyed over the back plane, in one pass.
void draw_scroll_parallax_8bits();
void draw_scroll_parallax_16bits();
void draw_scroll_parallax_32bits();

// ---- plane_layer.cpp: one plane by itself; plane 1 always keyed, plane 2 keyed by mode. They serve as draw
// routines of blit entries too: the entry is not read, the result is 1.
std::int32_t draw_scroll_layer_plane1_8bits(__RVKBlit2D__*);
std::int32_t draw_scroll_layer_plane1_16bits(__RVKBlit2D__*);
std::int32_t draw_scroll_layer_plane1_32bits(__RVKBlit2D__*);
std::int32_t draw_scroll_layer_plane2_8bits(__RVKBlit2D__*);
std::int32_t draw_scroll_layer_plane2_16bits(__RVKBlit2D__*);
std::int32_t draw_scroll_layer_plane2_32bits(__RVKBlit2D__*);

}  // namespace scroll2d
