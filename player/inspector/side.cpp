#include "player/inspector/side.h"

#include <algorithm>
#include <array>
#include <string>

#include "player/inspector/parts.h"
#include "player/inspector/words.h"

namespace player {
namespace {

constexpr std::size_t open_at_first = 3;               // scrolls; more would not fit a window of usual height
constexpr int gap = 16;                                // between columns, pixels at one step
constexpr const char* longest_number = "-9999999999";  // a distance between two 32-bit numbers

int room_across() {
    return static_cast<int>(ImGui::GetContentRegionAvail().x);
}

// Broken into lines where it is too long; a number is never broken.
void write(Rgba colour, const std::string& text) {
    ImGui::PushStyleColor(ImGuiCol_Text, packed(colour));
    ImGui::TextWrapped("%s", text.c_str());
    ImGui::PopStyleColor();
}

void write(const std::vector<Line>& lines) {
    for (const Line& line : lines) write(line.colour, line.text);
}

// The sprites one by one, as many as there is room for: a table where its columns fit, else a text for each.
void draw_sprites(const std::vector<SpriteSurvey>& sprites, std::size_t most) {
    if (sprites.empty() || most == 0) return;
    std::vector<std::array<std::string, 4>> rows{{"z", "picture", "at", "clip"}};
    for (std::size_t i = 0; i < std::min(most, sprites.size()); ++i)
        rows.push_back(words_of_sprite(sprites[i]));
    std::array<int, 5> columns{static_cast<int>(ImGui::GetCursorPosX())};
    for (std::size_t i = 0; i < 4; ++i) {
        columns[i + 1] = columns[i];
        for (const auto& row : rows)
            columns[i + 1] = std::max(columns[i + 1], columns[i] + text_width(row[i]) + px(gap));
    }
    if (columns[4] - columns[0] - px(gap) <= room_across()) {
        for (const auto& row : rows)
            for (std::size_t i = 0; i < 4; ++i) {
                if (i > 0) ImGui::SameLine(static_cast<float>(columns[i]));
                ImGui::TextColored(vec(faint), "%s", row[i].c_str());
            }
    } else {
        for (auto row = rows.begin() + 1; row != rows.end(); ++row)
            write(faint,
                  "z " + (*row)[0] + "  picture " + (*row)[1] + "  at " + (*row)[2] + "  clip " + (*row)[3]);
    }
    if (sprites.size() > most) write(faint, "and " + std::to_string(sprites.size() - most) + " more");
}

void draw_times(const std::vector<float>& times) {
    if (times.empty()) return;
    const float most = *std::max_element(times.begin(), times.end());
    char text[48];
    std::snprintf(text, sizeof text, "draw time %.2f ms, up to %.2f", static_cast<double>(times.back()),
                  static_cast<double>(most));
    write(ink, text);
    ImGui::PlotLines("##times", times.data(), static_cast<int>(times.size()), 0, nullptr, 0,
                     std::max(most * 1.2F, 0.1F), {ImGui::GetContentRegionAvail().x, fpx(34)});
}

}  // namespace

void SidePanel::draw_scroll(const ScrollSurvey& scroll, bool open, std::size_t sprites_listed,
                            host::Engine& engine, const std::vector<float>& times) {
    ImGui::PushID(scroll.number);
    const std::string name = "scroll " + std::to_string(scroll.number), view = words_of_view(scroll);
    const std::string both = name + "   " + view;
    const int arrow = static_cast<int>(ImGui::GetFontSize() + 3 * ImGui::GetStyle().FramePadding.x);
    const bool fits = arrow + text_width(both) <= room_across();
    ImGui::SetNextItemOpen(open, ImGuiCond_Once);
    const bool is_open = ImGui::CollapsingHeader(((fits ? both : name) + "###scroll").c_str());
    if (!fits) write(ink, view);
    if (is_open) {
        fields_.draw(scroll, engine);
        write(words_of_camera(scroll));
        write(faint, order_of_sprites(scroll));
        write(words_of_missing(scroll.missing));
        draw_times(times);
        draw_sprites(scroll.sprites, sprites_listed);
        ImGui::Dummy({0, fpx(4)});
    }
    ImGui::PopID();
}

void SidePanel::draw(const Area& area, const Survey& survey, host::Engine& engine, const Surveyor& surveyor,
                     bool timed) {
    fields_.keep_running(survey);
    begin_part("side", area);
    if (room_across() >=
        text_width(longest_number) + 2 * static_cast<int>(ImGui::GetStyle().FramePadding.x)) {
        write(faint, order_of_scrolls(survey));
        if (!timed) write(faint, "draw times: measured in the window only");
        write(words_of_missing(survey.missing_on_screen));
        ImGui::Dummy({0, fpx(2)});
        const std::size_t sprites_listed = survey.scrolls.size() == 1   ? 10
                                           : survey.scrolls.size() == 2 ? 4
                                                                        : 0;
        for (std::size_t i = 0; i < survey.scrolls.size(); ++i)
            draw_scroll(survey.scrolls[i], i < open_at_first, sprites_listed, engine,
                        surveyor.times(survey.scrolls[i].number));
    }
    ImGui::End();
}

}  // namespace player
