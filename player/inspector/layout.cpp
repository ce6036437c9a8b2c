#include "player/inspector/layout.h"

#include <algorithm>

#include "player/inspector/marks.h"

namespace player {
namespace {

// Pixels at one step.
constexpr int side_width = 396;
constexpr int maps_height = 184;
constexpr int readable_width = 960;  // of the game

int legend_height(int width, int steps) {
    const Area last = legend_places(width, steps).back();
    return last.y + last.height + 8 * steps;
}

}  // namespace

InspectorLayout lay_out_inspector(const Area& whole, int steps) {
    const int side = std::min(side_width * steps, whole.width / 2);
    const int legend = std::min(legend_height(whole.width, steps), whole.height / 2);
    const int maps = std::min({maps_height * steps, whole.height / 4, whole.height / 2 - legend});
    const int game_width = std::max(1, whole.width - side);
    const int game_height = std::max(1, whole.height - maps - legend);
    return {{0, 0, game_width, game_height},
            {0, game_height, game_width, maps},
            {game_width, 0, side, game_height + maps},
            {0, game_height + maps, whole.width, legend}};
}

Area inspected_size(int screen_width, int screen_height, int scale, int steps) {
    const int width = screen_width * scale + side_width * steps;
    return {0, 0, width, screen_height * scale + maps_height * steps + legend_height(width, steps)};
}

int readable_scale(int screen_width) {
    return std::max(1, (readable_width + screen_width / 2) / screen_width);
}

std::vector<Area> legend_places(int width, int steps) {
    constexpr int margin = 10, top = 5, gap = 14, row = 17;
    std::vector<Area> places;
    int x = margin, y = top;
    const auto place = [&](int needed) {
        if (x > margin && (x + needed + margin) * steps > width) {
            x = margin;
            y += row;
        }
        places.push_back({x * steps, y * steps, needed * steps, letter_height * steps});
        x += needed + gap;
    };
    const auto letters = [](std::string_view text) { return static_cast<int>(text.size()) * letter_width; };
    for (const MarkKind& kind : mark_kinds) place(legend_swatch + legend_gap + letters(kind.name));
    place(legend_dashes + legend_gap + letters(repeating_name));
    return places;
}

}  // namespace player
