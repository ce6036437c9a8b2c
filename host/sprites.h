// The six sprite routines: draw the graphic of a blit entry into its target.
//
// Where. The anchor of the graphic lands on (pos_x, pos_y): control point 0 when the graphic has one, else
// its centre (width / 2, height / 2). Nothing is drawn outside the target, nor outside the clip rectangle
// with has_clip.
//
// How. Scaled about the anchor by size x size_x across and size x size_y down (per cent of per cent; nothing
// is drawn at 0 or below), then turned about it counter-clockwise by `angle` thousandths of a degree. Flags
// bit 0 mirrors left and right about the anchor, bit 1 top and bottom. The nearest pixel is taken, there is
// no smoothing. A routine ignores what its name does not say: BlitSprite looks at neither size nor angle.
//
// What. A pixel of value 0 is transparent. At 32 bits with the graphic's alpha flag, byte 3 blends instead:
// out = (source * a + destination * (255 - a) + 127) / 255 for each colour byte, byte 3 of the result 255.
//
// The general routines draw at any size, and read two words more:
//
// Word 25 is translucency, 0 opaque to 255 invisible, clamped. At 8 bits, which cannot blend, 128 and more
// leave out every other pixel like a chessboard, and 255 all of them.
//
// Word 26, when nonzero, makes a silhouette: every pixel that is not transparent takes this pixel value (at
// 32 bits in its low 24 bits, and the opacity of the pixel stays). A shadow is a silhouette with
// translucency.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace host {

// Which routine an entry needs. `rotated` is meant after a graph table had its say: with one, nothing is
// turned.
struct SpriteNeeds {
    bool rotated;
    bool scaled;   // any of the three sizes is not 100
    bool general;  // word 25 or 26 is not 0
};

// Draws with exactly these needs at a depth of 8, 16 or 32 bits per pixel (any other counts as 8). The
// graphic and the target must be of that depth. Returns 1, or 0 when the entry has no graphic or no target.
std::int32_t draw_sprite(const __RVKBlit2D__& blit, SpriteNeeds needs, std::int32_t bits_per_pixel);

// The routine of the host's record for these needs.
[[nodiscard]] BlitRoutine sprite_routine(const Graphics2DInterface& graphics, SpriteNeeds needs);

}  // namespace host
