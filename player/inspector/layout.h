// Where the inspector's parts lie: the game on the left, its maps below it, the scrolls' figures on the
// right, the legend at the bottom. Nothing covers the game.
#pragma once

#include <vector>

#include "player/common/placement.h"

namespace player {

struct InspectorLayout {
    Area game;    // room for the game's screen
    Area maps;    // the planes' maps
    Area side;    // the scrolls
    Area legend;  // the colours and their meaning
};

// In a picture or a window of this size. In a small one the parts shrink before the game vanishes. `steps`
// here and below: the parts are as many times as large as usual.
[[nodiscard]] InspectorLayout lay_out_inspector(const Area& whole, int steps);

// The size at which a screen has just the room that it needs at this scale.
[[nodiscard]] Area inspected_size(int screen_width, int screen_height, int scale, int steps);
// The scale at which a screen can be read.
[[nodiscard]] int readable_scale(int screen_width);

// Where the entries of a legend of this width lie from its corner, in as many rows as they need: the kinds of
// marks in their order, then the map that repeats.
[[nodiscard]] std::vector<Area> legend_places(int width, int steps);
// Down to windows of this size the legend finds room for all of them.
inline constexpr int least_window_width = 240, least_window_height = 180;

}  // namespace player
