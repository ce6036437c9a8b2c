#include "player/inspector/survey.h"

#include <algorithm>

#include "module/contract/numbers.h"

namespace player {
namespace {

// One axis of shown_parts: the stretches of a map's extent that a view covers.
struct Stretch {
    std::int64_t from;
    std::int64_t length;
};
std::vector<Stretch> stretches(std::int64_t position, std::int64_t view, std::int32_t map) {
    if (view < 1 || map < 1) return {};
    if (view >= map) return {{0, map}};
    const std::int64_t from = scroll2d::floor_mod(position, map);
    const std::int64_t first = std::min(view, map - from);
    if (first == view) return {{from, view}};
    return {{from, first}, {0, view - first}};
}

}  // namespace

Rect common(const Rect& a, const Rect& b) {
    const std::int64_t x = std::max(a.x, b.x), y = std::max(a.y, b.y);
    return {x, y, std::min(a.right(), b.right()) - x, std::min(a.bottom(), b.bottom()) - y};
}

std::vector<Rect> shown_parts(const PlaneSurvey& plane, std::int64_t view_width, std::int64_t view_height) {
    std::vector<Rect> parts;
    if (!plane.has_map) return parts;
    for (const Stretch& y : stretches(plane.position.y, view_height, plane.map_height))
        for (const Stretch& x : stretches(plane.position.x, view_width, plane.map_width))
            parts.push_back({x.from, y.from, x.length, y.length});
    return parts;
}

Sides stopped_sides(const PlaneSurvey& plane, std::int64_t view_width, std::int64_t view_height) {
    Sides sides = 0;
    if (!plane.has_map) return sides;
    if (!plane.repeats_x && plane.position.x <= 0) sides |= left_side;
    if (!plane.repeats_x && plane.position.x + view_width >= plane.map_width) sides |= right_side;
    if (!plane.repeats_y && plane.position.y <= 0) sides |= top_side;
    if (!plane.repeats_y && plane.position.y + view_height >= plane.map_height) sides |= bottom_side;
    return sides;
}

Distances distances(const Point& point, const Rect& rect) {
    return {point.x - rect.x, rect.right() - 1 - point.x, point.y - rect.y, rect.bottom() - 1 - point.y};
}

}  // namespace player
