// What is drawn: scenes, grouped into families whose rules cost about the same.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct Size {
    std::int32_t width = 0;  // pixels
    std::int32_t height = 0;
};

struct Position {
    std::int32_t x = 0;  // map pixels at the view's top left; any value, maps repeat
    std::int32_t y = 0;
};

// How a scroll moves from frame to frame; the back plane goes half as far.
struct Motion {
    const char* name;
    Position step;
};

// A scroll of one drawing rule.
struct Variant {
    std::int32_t planes;       // 1 or 2
    std::int32_t mode;         // 0 opaque, 2 keyed, 1 and 3 the same with the front plane among the sprites
    std::int32_t alpha;        // of the scroll, 0-255
    bool front_alpha = false;  // the plane's map has per-pixel alpha
    bool back_alpha = false;

    [[nodiscard]] constexpr bool keyed() const { return mode >= 2; }
    [[nodiscard]] std::string text() const;  // "mode 2, alpha 160, pixel alpha in front and back"
};

struct Family {
    const char* name;
    std::vector<std::int32_t> depths;  // bits per pixel
    std::vector<Variant> variants;
};

// In the order of the printed table.
const std::vector<Family>& families();

inline constexpr std::array<Size, 4> view_sizes{{{320, 200}, {640, 480}, {1280, 720}, {1920, 1080}}};
inline constexpr std::array<Motion, 4> motions{
    {{"still", {0, 0}}, {"+1", {1, 0}}, {"+4 diagonal", {4, 4}}, {"+40", {40, 0}}}};

// The map that each view is given: larger than the view, and of no round size.
[[nodiscard]] constexpr Size map_size(Size view) {
    return {view.width * 2 + 37, view.height * 3 / 2 + 11};
}

[[nodiscard]] std::string text(Size size);  // "640x480"

}  // namespace bench
