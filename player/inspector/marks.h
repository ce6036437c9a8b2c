// Marks of the inspector: what each colour means, and lines that lie exactly on pixels.
#pragma once

#include <imgui.h>

#include <optional>
#include <string>
#include <vector>

#include "player/canvas/style.h"
#include "player/common/placement.h"
#include "player/inspector/survey.h"

namespace player {

// The kinds of marks, each with its colour; whoever looks may hide each.
enum class Mark { view, region1, region2, camera, map_edge, clip, sprite };

struct MarkKind {
    Mark mark;
    const char* name;
    const char* meaning;
    Rgba colour;
};
inline constexpr MarkKind mark_kinds[] = {
    {Mark::view, "view", "what a scroll covers of the screen", {244, 246, 250, 255}},
    {Mark::region1, "region1", "inside it the camera moves freely", {255, 206, 92, 255}},
    {Mark::region2, "region2", "the camera never leaves it", {92, 178, 255, 255}},
    {Mark::camera, "camera", "and its distance to the edges, in pixels", {112, 255, 136, 255}},
    {Mark::map_edge, "map edge", "the scroll can go no further", {255, 84, 84, 255}},
    {Mark::clip, "clip", "a sprite's own region", {222, 130, 255, 255}},
    {Mark::sprite, "sprite", "box of its picture", {150, 176, 204, 255}},
};
inline const MarkKind& kind_of(Mark mark) {
    return mark_kinds[static_cast<int>(mark)];
}
inline Rgba colour_of(Mark mark) {
    return kind_of(mark).colour;
}

// The sides of a map at which it repeats.
inline constexpr Rgba repeating{120, 220, 205, 255};
inline constexpr const char* repeating_name = "map repeats";

// What stands before a name in the legend, and the gap between, in pixels at one step.
inline constexpr int legend_swatch = 11, legend_dashes = 28, legend_gap = 6;

// Which marks are shown.
struct Shown {
    bool kinds[std::size(mark_kinds)] = {true, true, true, true, true, true, true};
    [[nodiscard]] bool operator()(Mark mark) const { return kinds[static_cast<int>(mark)]; }
};

// A rectangle of the game as one of the picture, exact to the pixel where the game is enlarged by a whole
// number.
class Projection {
  public:
    Projection(const Area& at, std::int64_t width, std::int64_t height)
        : at_(at), width_(width), height_(height) {}

    [[nodiscard]] Area operator()(const Rect& rect) const;
    [[nodiscard]] Area of(const Point& point) const { return (*this)(Rect{point.x, point.y, 1, 1}); }
    [[nodiscard]] const Area& room() const { return at_; }

  private:
    Area at_;
    std::int64_t width_;
    std::int64_t height_;
};

void fill(ImDrawList& list, const Area& area, ImU32 colour);
// Along the inside of the edges, `thickness` pixels.
void outline(ImDrawList& list, const Area& area, int thickness, ImU32 colour);
// A thin area as a dashed line along its longer side.
void dashes(ImDrawList& list, const Area& line, ImU32 colour);
void clip_to(ImDrawList& list, const Area& area);

// In pixels, in the present font.
[[nodiscard]] int text_width(const std::string& text);

// Small text on a dark ground.
struct Tag {
    int x;  // where its top left corner is wanted
    int y;
    std::string text;
    Rgba colour;
};
inline constexpr int tag_height = letter_height + 2;  // pixels at one step

// Where tags find room. The first ones have the better places: a tag moves up or down a little when another
// is in its way, and has no place when it finds none in the room beside what is covered. No tag is ever cut
// or covered, since half a number is a wrong number.
[[nodiscard]] std::vector<std::optional<Area>> place_tags(const std::vector<Area>& wanted, const Area& room,
                                                          const Area& covered);
void draw_tags(ImDrawList& list, const std::vector<Tag>& tags, const Area& room, const Area& covered);

// A distance of the camera, and the thin line in the picture along which it is measured.
struct Measure {
    Area line;
    std::int64_t distance;  // pixels of the game; negative: the camera is beyond
};
// To the left, the right, the top and the bottom of the region that the camera moves in: the inner one, else
// the outer one, else the view. Of a scroll with a camera that is alive; none where the region is empty.
[[nodiscard]] std::vector<Measure> measures(const ScrollSurvey& scroll, const Projection& to_picture);

}  // namespace player
