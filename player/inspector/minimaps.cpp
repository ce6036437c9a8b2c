#include <algorithm>
#include <string>

#include "module/contract/numbers.h"
#include "player/inspector/parts.h"

namespace player {
namespace {

// Pixels at one step.
constexpr int cell_gap = 10;
constexpr int line_height = 14;   // of the label above a map
constexpr int label_gap = 3;      // below it
constexpr int least_height = 40;  // that a label of several lines leaves its map
constexpr int piece_gap = 10;     // between two parts of a line
constexpr Rgba ground{20, 22, 29, 255};

// The first source pixel that pixel `i` of `count` stands for.
int first_of(int i, int extent, int count) {
    return static_cast<int>(std::int64_t{i} * extent / count);
}

// Each pixel the mean of what it stands for, over the panel's dark ground where the map is transparent. Of
// large maps a sample is enough: at most eight by eight pixels for each of the picture.
Picture thumbnail(const host::Map& map, const host::Palette& palette, int width, int height) {
    constexpr int most_samples = 8;
    const bool alpha = map.bits_per_pixel() == 32 && map.record().alpha_flag != 0;
    Picture result(width, height);
    for (int y = 0; y < height; ++y) {
        const int top = first_of(y, map.height(), height),
                  bottom = std::max(top + 1, first_of(y + 1, map.height(), height));
        const int down = 1 + (bottom - top - 1) / most_samples;
        for (int x = 0; x < width; ++x) {
            const int left = first_of(x, map.width(), width),
                      right = std::max(left + 1, first_of(x + 1, map.width(), width));
            const int across = 1 + (right - left - 1) / most_samples;
            int r = 0, g = 0, b = 0, n = 0;
            for (int sy = top; sy < bottom; sy += down)
                for (int sx = left; sx < right; sx += across, ++n) {
                    const Rgba p = host::from_pixel(map.pixel(sx, sy), map.bits_per_pixel(), palette, alpha);
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

// Lines of a label, each of pieces that are never broken; empty when they do not fit.
using Lines = std::vector<std::vector<std::string>>;
Lines flow(const std::vector<std::string>& pieces, int width, std::size_t most_lines) {
    Lines lines;
    int used = 0;
    for (const std::string& piece : pieces) {
        const int length = text_width(piece);
        if (length > width) return {};
        if (lines.empty() || used + px(piece_gap) + length > width) {
            lines.emplace_back();
            used = -px(piece_gap);
        }
        lines.back().push_back(piece);
        used += px(piece_gap) + length;
    }
    return lines.size() <= most_lines ? lines : Lines{};
}

class Minimap {
  public:
    Minimap(const Area& cell, const ScrollSurvey& scroll, std::size_t plane)
        : cell_(cell), scroll_(scroll), plane_(scroll.planes[plane]), front_(plane == 0) {}

    void draw(host::Engine& engine, Canvas& canvas, int texture, bool renew) {
        ImDrawList& list = *ImGui::GetWindowDrawList();
        clip_to(list, cell_);
        const int label_height = draw_label(list) + px(label_gap);
        const Area room{cell_.x, cell_.y + label_height, cell_.width, cell_.height - label_height};
        const host::Map* map = engine.files().find_map(scroll_.file, plane_.graph);
        if (map == nullptr || room.height < px(8)) {
            list.AddText(vec(room.x, room.y), packed(warning), map == nullptr ? "the map is gone" : "");
        } else {
            const Area at = place_map(room);
            if (renew || !canvas.has_texture(texture, at.width, at.height))
                canvas.keep_texture(texture, thumbnail(*map, engine.palette(), at.width, at.height));
            list.AddImage(canvas.texture(texture), vec(at.x, at.y), vec(at.x + at.width, at.y + at.height));
            draw_marks(list, Projection(at, plane_.map_width, plane_.map_height));
            draw_edges(list, at);
        }
        list.PopClipRect();
    }

  private:
    // What fits whole of name, picture, size and place, the size being the first to go. Returns the height.
    [[nodiscard]] int draw_label(ImDrawList& list) const {
        const auto text = [](std::int64_t value) { return std::to_string(value); };
        const std::string short_name = text(scroll_.number) + (front_ ? " front" : " back");
        const std::string name = "scroll " + short_name;
        const std::string picture = text(scroll_.file) + "/" + text(plane_.graph);
        const std::string size = text(plane_.map_width) + " x " + text(plane_.map_height);
        const std::string at = "at " + text(plane_.position.x) + ", " + text(plane_.position.y);
        const int room = (cell_.height - px(label_gap + least_height)) / px(line_height);
        Lines lines;
        for (const auto& pieces : std::vector<std::vector<std::string>>{
                 {name, picture, size, at}, {name, picture, at}, {name, picture}, {short_name, picture}})
            if (lines.empty()) lines = flow(pieces, cell_.width, static_cast<std::size_t>(std::max(1, room)));
        int y = cell_.y;
        for (const auto& line : lines) {
            int x = cell_.x;
            for (const std::string& piece : line) {
                list.AddText(vec(x, y), packed(&piece == &lines[0][0] ? ink : faint), piece.c_str());
                x += text_width(piece) + px(piece_gap);
            }
            y += px(line_height);
        }
        return y - cell_.y;
    }

    // As large as fits, in the map's proportions, with a margin for the edges' marks.
    [[nodiscard]] Area place_map(const Area& room) const {
        const int margin = px(4);
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
            outline(list, {at.x, at.y, std::max(px(2), at.width), std::max(px(2), at.height)}, px(1),
                    packed(colour_of(Mark::view)));
        }
        if (!front_ || !scroll_.camera || !scroll_.camera->alive) return;
        Point point = scroll_.camera->world;
        if (plane_.repeats_x) point.x = scroll2d::floor_mod(point.x, plane_.map_width);
        if (plane_.repeats_y) point.y = scroll2d::floor_mod(point.y, plane_.map_height);
        const Area at = to_map.of(point);
        fill(list, {at.x - px(2), at.y - px(2), px(5), px(5)}, packed(ground));
        fill(list, {at.x - px(1), at.y - px(1), px(3), px(3)}, packed(colour_of(Mark::camera)));
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
        const int thick = px(2);
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
    const Area room{area.x + px(cell_gap), area.y + px(6), area.width - px(2 * cell_gap),
                    area.height - px(10)};
    int place = 0;
    for (const ScrollSurvey& scroll : survey.scrolls)
        for (std::size_t plane = 0; plane < scroll.planes.size(); ++plane, ++place) {
            const int column = place % columns, row = place / columns;
            const Area cell{room.x + column * room.width / columns, room.y + row * room.height / rows,
                            room.width / columns - px(cell_gap), room.height / rows - px(2)};
            if (cell.width < 1 || cell.height < 1) continue;
            Minimap(cell, scroll, plane)
                .draw(engine, canvas, 2 * scroll.number + static_cast<int>(plane), renew);
        }
    ImGui::End();
}

}  // namespace player
