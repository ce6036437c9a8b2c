#include <algorithm>
#include <string>

#include "player/inspector/parts.h"

namespace player {
namespace {

constexpr int cell_gap = 10;
constexpr int label_height = 17;
constexpr Rgba ground{20, 22, 29, 255};

// Each pixel the mean of what it stands for, over the panel's dark ground where the map is transparent.
Picture thumbnail(const host::Image& map, int width, int height) {
    Picture result(width, height);
    for (int y = 0; y < height; ++y) {
        const int top = y * map.height / height, bottom = std::max(top + 1, (y + 1) * map.height / height);
        for (int x = 0; x < width; ++x) {
            const int left = x * map.width / width, right = std::max(left + 1, (x + 1) * map.width / width);
            int r = 0, g = 0, b = 0, n = 0;
            for (int sy = top; sy < bottom; ++sy)
                for (int sx = left; sx < right; ++sx, ++n) {
                    const Rgba p =
                        map.pixels[static_cast<std::size_t>(sy) * static_cast<std::size_t>(map.width) +
                                   static_cast<std::size_t>(sx)];
                    r += (p.r * p.a + ground.r * (255 - p.a)) / 255;
                    g += (p.g * p.a + ground.g * (255 - p.a)) / 255;
                    b += (p.b * p.a + ground.b * (255 - p.a)) / 255;
                }
            const auto mean = [n](int sum) { return static_cast<std::uint8_t>(sum / n); };
            result.at(x, y) = {mean(r), mean(g), mean(b), 255};
        }
    }
    return result;
}

class Minimap {
  public:
    Minimap(const Area& cell, const ScrollSurvey& scroll, std::size_t plane)
        : cell_(cell), scroll_(scroll), plane_(scroll.planes[plane]), front_(plane == 0) {}

    void draw(host::Engine& engine, Canvas& canvas, int texture, bool renew) {
        ImDrawList& list = *ImGui::GetWindowDrawList();
        clip_to(list, cell_);
        draw_label(list);
        const Area room{cell_.x, cell_.y + label_height, cell_.width, cell_.height - label_height};
        const host::Map* map = engine.files().find_map(scroll_.file, plane_.graph);
        if (map == nullptr || room.height < 8) {
            list.AddText({static_cast<float>(room.x), static_cast<float>(room.y)}, packed(warning),
                         map == nullptr ? "the map is gone" : "");
        } else {
            const Area at = place_map(room);
            if (renew || !canvas.has_texture(texture, at.width, at.height))
                canvas.keep_texture(texture,
                                    thumbnail(host::to_image(*map, engine.palette()), at.width, at.height));
            list.AddImage(canvas.texture(texture), {static_cast<float>(at.x), static_cast<float>(at.y)},
                          {static_cast<float>(at.x + at.width), static_cast<float>(at.y + at.height)});
            draw_marks(list, Projection(at, plane_.map_width, plane_.map_height));
            draw_edges(list, at);
        }
        list.PopClipRect();
    }

  private:
    void draw_label(ImDrawList& list) const {
        const std::string name = "scroll " + std::to_string(scroll_.number) + (front_ ? " front" : " back");
        list.AddText({static_cast<float>(cell_.x), static_cast<float>(cell_.y)}, packed(ink), name.c_str());
        const std::string figures =
            std::to_string(scroll_.file) + "/" + std::to_string(plane_.graph) + "  " +
            std::to_string(plane_.map_width) + " x " + std::to_string(plane_.map_height) + "  at " +
            std::to_string(plane_.position.x) + ", " + std::to_string(plane_.position.y);
        const float offset = ImGui::CalcTextSize(name.c_str()).x + 10;
        list.AddText({static_cast<float>(cell_.x) + offset, static_cast<float>(cell_.y)}, packed(faint),
                     figures.c_str());
    }

    // As large as fits, in the map's proportions, with a margin for the edges' marks.
    [[nodiscard]] Area place_map(const Area& room) const {
        constexpr int margin = 4;
        const double scale = std::min(static_cast<double>(room.width - 2 * margin) / plane_.map_width,
                                      static_cast<double>(room.height - 2 * margin) / plane_.map_height);
        const int width = std::max(1, static_cast<int>(plane_.map_width * scale));
        const int height = std::max(1, static_cast<int>(plane_.map_height * scale));
        return {room.x + margin, room.y + margin, width, height};
    }

    void draw_marks(ImDrawList& list, const Projection& to_map) const {
        for (const Rect& part : shown_parts(plane_, scroll_.view.width, scroll_.view.height)) {
            const Area at = to_map(part);
            fill(list, at, IM_COL32(255, 255, 255, 44));
            outline(list, {at.x, at.y, std::max(2, at.width), std::max(2, at.height)}, 1,
                    packed(colour_of(Mark::view)));
        }
        if (!front_ || !scroll_.camera || !scroll_.camera->alive) return;
        Point point = scroll_.camera->world;
        const auto wrapped = [](std::int64_t value, std::int64_t extent) {
            return ((value % extent) + extent) % extent;
        };
        if (plane_.repeats_x) point.x = wrapped(point.x, plane_.map_width);
        if (plane_.repeats_y) point.y = wrapped(point.y, plane_.map_height);
        const Area at = to_map.of(point);
        fill(list, {at.x - 2, at.y - 2, 5, 5}, packed(ground));
        fill(list, {at.x - 1, at.y - 1, 3, 3}, packed(colour_of(Mark::camera)));
    }

    // A side that repeats is dashed, one where the map ends is drawn through, and red where the view stands
    // at it.
    void draw_edges(ImDrawList& list, const Area& map) const {
        const Sides stopped = stopped_sides(plane_, scroll_.view.width, scroll_.view.height);
        const auto side = [&](bool repeats, Sides which, const Area& line) {
            if (repeats)
                dashes(list, line, packed(repeating));
            else
                fill(list, line, packed((stopped & which) != 0 ? colour_of(Mark::map_edge) : faint));
        };
        constexpr int thick = 2;
        side(plane_.repeats_x, left_side, {map.x - thick, map.y, thick, map.height});
        side(plane_.repeats_x, right_side, {map.x + map.width, map.y, thick, map.height});
        side(plane_.repeats_y, top_side, {map.x, map.y - thick, map.width, thick});
        side(plane_.repeats_y, bottom_side, {map.x, map.y + map.height, map.width, thick});
    }

    Area cell_;
    const ScrollSurvey& scroll_;
    const PlaneSurvey& plane_;
    bool front_;
};

}  // namespace

void draw_minimaps(const Area& area, const Survey& survey, host::Engine& engine, Canvas& canvas, bool renew) {
    begin_part("maps", area);
    int count = 0;
    for (const ScrollSurvey& scroll : survey.scrolls) count += static_cast<int>(scroll.planes.size());
    if (count == 0) {
        ImGui::TextColored(vec(faint), "No scroll is running.");
        ImGui::End();
        return;
    }
    // Maps are mostly wide: two rows as soon as there are three of them.
    const int rows = count <= 2 ? 1 : count <= 10 ? 2 : 3;
    const int columns = (count + rows - 1) / rows;
    const Area room{area.x + cell_gap, area.y + 6, area.width - 2 * cell_gap, area.height - 10};
    int place = 0;
    for (const ScrollSurvey& scroll : survey.scrolls)
        for (std::size_t plane = 0; plane < scroll.planes.size(); ++plane, ++place) {
            const int column = place % columns, row = place / columns;
            const Area cell{room.x + column * room.width / columns, room.y + row * room.height / rows,
                            room.width / columns - cell_gap, room.height / rows - 2};
            if (cell.width < 1 || cell.height < 1) continue;
            Minimap(cell, scroll, plane)
                .draw(engine, canvas, 2 * scroll.number + static_cast<int>(plane), renew);
        }
    ImGui::End();
}

}  // namespace player
