#include "player/inspector/layout.h"

#include <algorithm>

namespace player {
namespace {

constexpr int side_width = 396;
constexpr int legend_height = 26;
constexpr int maps_height = 184;
constexpr int readable_width = 960;  // of the game

}  // namespace

InspectorLayout lay_out_inspector(int width, int height) {
    const int side = std::min(side_width, width / 2);
    const int maps = std::min(maps_height, height / 4);
    const int legend = std::min(legend_height, height / 8);
    const int game_width = std::max(1, width - side), game_height = std::max(1, height - maps - legend);
    return {{0, 0, game_width, game_height},
            {0, game_height, game_width, legend},
            {0, game_height + legend, game_width, maps},
            {game_width, 0, side, height}};
}

Area inspected_size(int screen_width, int screen_height, int scale) {
    if (scale == 0) scale = std::max(1, (readable_width + screen_width / 2) / screen_width);
    return {0, 0, screen_width * scale + side_width, screen_height * scale + legend_height + maps_height};
}

}  // namespace player
