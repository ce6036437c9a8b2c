#include "player/inspector/marks.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace player {
namespace {

// Game pixels to picture pixels. What lies far off is brought near, still out of sight, so that it fits.
int projected(std::int64_t value, int from, int room, std::int64_t extent) {
    const std::int64_t near = std::clamp<std::int64_t>(value, -extent, 2 * extent);
    const std::int64_t scaled = near * room;
    const std::int64_t whole = scaled / extent - (scaled % extent < 0 ? 1 : 0);
    return from + static_cast<int>(whole);
}

bool overlap(const Area& a, const Area& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

// The wanted place, or the nearest one straight below or above it that touches none of the taken ones.
std::optional<Area> free_place(Area wanted, const Area& room, const std::vector<Area>& taken) {
    if (wanted.width > room.width || wanted.height > room.height) return std::nullopt;
    wanted.x = std::clamp(wanted.x, room.x, room.x + room.width - wanted.width);
    wanted.y = std::clamp(wanted.y, room.y, room.y + room.height - wanted.height);
    const int farthest = 3 * wanted.height;  // beyond that it would seem to belong to something else
    for (const bool down : {true, false})
        for (Area place = wanted; std::abs(place.y - wanted.y) <= farthest && place.y >= room.y &&
                                  place.y + place.height <= room.y + room.height;) {
            const auto other = std::find_if(taken.begin(), taken.end(),
                                            [&place](const Area& area) { return overlap(area, place); });
            if (other == taken.end()) return place;
            place.y = down ? other->y + other->height : other->y - place.height;
        }
    return std::nullopt;
}

}  // namespace

Area Projection::operator()(const Rect& rect) const {
    const int left = projected(rect.x, at_.x, at_.width, width_);
    const int top = projected(rect.y, at_.y, at_.height, height_);
    return {left, top, projected(rect.right(), at_.x, at_.width, width_) - left,
            projected(rect.bottom(), at_.y, at_.height, height_) - top};
}

void fill(ImDrawList& list, const Area& area, ImU32 colour) {
    if (area.width < 1 || area.height < 1) return;
    list.AddRectFilled(vec(area.x, area.y), vec(area.x + area.width, area.y + area.height), colour);
}

void outline(ImDrawList& list, const Area& area, int thickness, ImU32 colour) {
    const int t = std::min({thickness, (area.width + 1) / 2, (area.height + 1) / 2});
    if (t < 1) return;
    fill(list, {area.x, area.y, area.width, t}, colour);
    fill(list, {area.x, area.y + area.height - t, area.width, t}, colour);
    fill(list, {area.x, area.y + t, t, area.height - 2 * t}, colour);
    fill(list, {area.x + area.width - t, area.y + t, t, area.height - 2 * t}, colour);
}

void dashes(ImDrawList& list, const Area& line, ImU32 colour) {
    const int dash = px(4);
    const bool across = line.width > line.height;
    const int length = across ? line.width : line.height;
    for (int at = 0; at < length; at += 2 * dash) {
        const int rest = std::min(dash, length - at);
        fill(list,
             across ? Area{line.x + at, line.y, rest, line.height}
                    : Area{line.x, line.y + at, line.width, rest},
             colour);
    }
}

void clip_to(ImDrawList& list, const Area& area) {
    list.PushClipRect(vec(area.x, area.y), vec(area.x + area.width, area.y + area.height));
}

int text_width(const std::string& text) {
    return static_cast<int>(ImGui::CalcTextSize(text.c_str()).x);
}

std::vector<std::optional<Area>> place_tags(const std::vector<Area>& wanted, const Area& room,
                                            const Area& covered) {
    std::vector<Area> taken{covered};
    std::vector<std::optional<Area>> places;
    for (const Area& tag : wanted) {
        places.push_back(free_place(tag, room, taken));
        if (places.back()) taken.push_back(*places.back());
    }
    return places;
}

void draw_tags(ImDrawList& list, const std::vector<Tag>& tags, const Area& room, const Area& covered) {
    constexpr ImU32 ground = IM_COL32(12, 14, 20, 170);
    std::vector<Area> wanted;
    wanted.reserve(tags.size());
    for (const Tag& tag : tags)
        wanted.push_back({tag.x, tag.y, text_width(tag.text) + px(6), px(tag_height)});
    const auto places = place_tags(wanted, room, covered);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (!places[i]) continue;
        fill(list, *places[i], ground);
        list.AddText(vec(places[i]->x + px(3), places[i]->y + px(1)), packed(tags[i].colour),
                     tags[i].text.c_str());
    }
}

}  // namespace player
