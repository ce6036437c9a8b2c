#include "player/inspector/marks.h"

#include <algorithm>

namespace player {
namespace {

ImVec2 corner(int x, int y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

// Game pixels to picture pixels. What lies far off is brought near, still out of sight, so that it fits.
int projected(std::int64_t value, int from, int room, std::int64_t extent) {
    const std::int64_t near = std::clamp<std::int64_t>(value, -extent, 2 * extent);
    const std::int64_t scaled = near * room;
    const std::int64_t whole = scaled / extent - (scaled % extent < 0 ? 1 : 0);
    return from + static_cast<int>(whole);
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
    list.AddRectFilled(corner(area.x, area.y), corner(area.x + area.width, area.y + area.height), colour);
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
    constexpr int dash = 4;
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

void tag(ImDrawList& list, int x, int y, const std::string& text, Rgba colour, const Area& room) {
    const ImVec2 size = ImGui::CalcTextSize(text.c_str());
    const int width = static_cast<int>(size.x) + 6, height = static_cast<int>(size.y) + 2;
    x = std::max(room.x, std::min(x, room.x + room.width - width));
    y = std::max(room.y, std::min(y, room.y + room.height - height));
    fill(list, {x, y, width, height}, IM_COL32(12, 14, 20, 210));
    list.AddText(corner(x + 3, y + 1), packed(colour), text.c_str());
}

void clip_to(ImDrawList& list, const Area& area) {
    list.PushClipRect(corner(area.x, area.y), corner(area.x + area.width, area.y + area.height));
}

}  // namespace player
