// Where the inspector's parts lie: the game on the left, its maps below it, the scrolls' figures on the
// right. Nothing covers the game.
#pragma once

#include "player/common/placement.h"

namespace player {

struct InspectorLayout {
    Area game;    // room for the game's screen
    Area legend;  // the colours and their meaning
    Area maps;    // the planes' maps
    Area side;    // the scrolls
};

// In a picture or a window of this size. In a small one the parts shrink before the game vanishes.
[[nodiscard]] InspectorLayout lay_out_inspector(int width, int height);

// The size at which a screen has just the room that it needs at this scale, or, with 0, at the one that is
// readable.
[[nodiscard]] Area inspected_size(int screen_width, int screen_height, int scale);

}  // namespace player
