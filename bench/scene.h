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

    bool operator==(const Size&) const = default;
};

struct Position {
    std::int32_t x = 0;  // map pixels at the view's top left; any value, maps repeat
    std::int32_t y = 0;

    constexpr Position& operator+=(Position step) {
        x += step.x;
        y += step.y;
        return *this;
    }
    bool operator==(const Position&) const = default;
    // Where the back plane is while the front plane is here.
    [[nodiscard]] constexpr Position halved() const { return {x >> 1, y >> 1}; }
};

// How a scroll moves from frame to frame; the back plane goes half as far.
struct Motion {
    const char* name;
    Position step;

    [[nodiscard]] constexpr bool moves() const { return step != Position{}; }
};
inline constexpr Motion still{"still", {0, 0}};
inline constexpr Motion by_one{"+1", {1, 0}};
inline constexpr Motion by_four{"+4 diagonal", {4, 4}};
inline constexpr Motion by_forty{"+40", {40, 0}};

// A scroll of one drawing rule.
struct Variant {
    std::int32_t planes;       // 1 or 2
    std::int32_t mode;         // 0 opaque, 2 keyed, 1 and 3 the same with the front plane among the sprites
    std::int32_t alpha;        // of the scroll, 0-255
    bool front_alpha = false;  // the plane's map has per-pixel alpha
    bool back_alpha = false;

    [[nodiscard]] constexpr bool keyed() const { return mode >= 2; }
    [[nodiscard]] constexpr bool blends() const { return alpha != 255 || front_alpha || back_alpha; }
    [[nodiscard]] std::string text() const;  // "mode 2, alpha 160, pixel alpha in front and back"
};

struct Family {
    const char* name;
    std::vector<std::int32_t> depths;  // bits per pixel
    std::vector<Variant> variants;

    [[nodiscard]] bool blends() const { return variants.front().blends(); }  // all do, or none
};

// In the order of the printed table.
const std::vector<Family>& families();

inline constexpr std::array<Size, 4> view_sizes{{{320, 200}, {640, 480}, {1280, 720}, {1920, 1080}}};
inline constexpr Size largest_view = view_sizes.back();

// Those whose rows do not end with a vector register.
inline constexpr std::array<Size, 3> odd_view_sizes{{{333, 200}, {500, 375}, {641, 480}}};

// The map that each view is given: larger than the view, and of no round size.
[[nodiscard]] constexpr Size map_size(Size view) {
    return {view.width * 2 + 37, view.height * 3 / 2 + 11};
}

[[nodiscard]] std::string text(Size size);  // "640x480"

}  // namespace bench
