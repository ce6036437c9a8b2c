// What the inspector says about the scrolls, in words.
#pragma once

#include <string>
#include <vector>

#include "player/inspector/marks.h"

namespace player {

struct Line {
    Rgba colour;
    std::string text;
};

// "scrolls in drawing order, deepest first: 3 (z 600), 0 (z 512)"
[[nodiscard]] std::string order_of_scrolls(const Survey& survey);
// "640 x 480 at 0, 0": its view, where it draws, and whether it does.
[[nodiscard]] std::string words_of_view(const ScrollSurvey& scroll);
// Where the camera is and how far from the edges of each region, or why there is none.
[[nodiscard]] std::vector<Line> words_of_camera(const ScrollSurvey& scroll);
// "sprites by z, deepest first: 600 (3), 512 = front plane, 100", runs of equal z taken together.
[[nodiscard]] std::string order_of_sprites(const ScrollSurvey& scroll);
[[nodiscard]] std::vector<Line> words_of_missing(const MissingMaps& missing);
// The columns z, picture, at, clip.
[[nodiscard]] std::array<std::string, 4> words_of_sprite(const SpriteSurvey& sprite);

}  // namespace player
