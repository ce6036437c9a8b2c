// What the inspector shows, as plain numbers: the scrolls, their views and cameras and maps, as they stand
// after a frame. Knows how to work things out, and nothing of how they are drawn.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "player/game/missing_maps.h"

namespace player {

// A rectangle in pixels of the game. 64 bits, since scripts may write any 32-bit number anywhere.
struct Rect {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;

    [[nodiscard]] bool empty() const { return width < 1 || height < 1; }
    [[nodiscard]] std::int64_t right() const { return x + width; }  // first column beyond
    [[nodiscard]] std::int64_t bottom() const { return y + height; }
    bool operator==(const Rect&) const = default;
};

[[nodiscard]] Rect common(const Rect& a, const Rect& b);

struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;
    bool operator==(const Point&) const = default;
};

// One of the four sides of a rectangle, by its bit.
enum Side : unsigned { left_side = 1, right_side = 2, top_side = 4, bottom_side = 8 };
using Sides = unsigned;

struct PlaneSurvey {
    int graph = 0;
    bool has_map = false;  // the map may have been unloaded meanwhile; then it has no size either
    int map_width = 0;     // pixels
    int map_height = 0;
    Point position;  // map pixel at the view's corner
    bool repeats_x = false;
    bool repeats_y = false;
};

// The rectangles of its map that a plane shows in a view of this size: one, or up to four where it repeats
// and the view lies over an edge. Empty without a map.
[[nodiscard]] std::vector<Rect> shown_parts(const PlaneSurvey& plane, std::int64_t view_width,
                                            std::int64_t view_height);

// The sides at which a plane stands at an edge of its map that does not repeat, so that it can go no further.
[[nodiscard]] Sides stopped_sides(const PlaneSurvey& plane, std::int64_t view_width,
                                  std::int64_t view_height);

// A follow region of a camera.
struct RegionSurvey {
    int number = 0;
    bool defined = false;
    Rect rect;  // on the destination, cut to it as the module does; may be empty
};

struct CameraSurvey {
    bool alive = false;  // else the other two mean nothing
    Point world;
    Point on_destination;
};

// From a point to each side of a rectangle: how far it may go before it crosses that side. Negative: it is
// beyond.
struct Distances {
    std::int64_t left, right, top, bottom;
    bool operator==(const Distances&) const = default;
};
[[nodiscard]] Distances distances(const Point& point, const Rect& rect);

// A process that a scroll, or the screen, has drawn.
struct SpriteSurvey {
    int z = 0;
    int file = 0;
    int graph = 0;
    Point position;            // of its control point, on the destination
    Rect box;                  // of its picture, unturned, on the destination
    std::optional<Rect> clip;  // by a region of its own
};

struct ScrollSurvey {
    int number = 0;
    bool visible = true;
    bool drawn = false;     // in the last frame
    bool on_screen = true;  // else it draws into the map below
    int destination_file = 0;
    int destination_graph = 0;
    Rect view;  // on the destination; empty while it is not known or there is nothing to draw
    int z = 0;
    int file = 0;
    // How many sprites lie behind the front plane, when that is drawn among them.
    std::optional<std::size_t> plane_place;
    std::vector<PlaneSurvey> planes;     // one or two, the front one first
    std::optional<CameraSurvey> camera;  // nothing: the script moves the scroll itself
    std::optional<RegionSurvey> region1;
    std::optional<RegionSurvey> region2;
    std::vector<SpriteSurvey> sprites;  // in drawing order, the deepest first
    MissingMaps missing;                // sprites that are not drawn, having no picture
};

struct Survey {
    int screen_width = 0;
    int screen_height = 0;
    std::vector<ScrollSurvey> scrolls;         // the running ones by number
    std::vector<int> order;                    // numbers of the scrolls that were drawn, the deepest first
    std::vector<SpriteSurvey> screen_sprites;  // in drawing order
    MissingMaps missing_on_screen;
};

}  // namespace player
