#include "player/inspector/fields.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "player/inspector/marks.h"

namespace player {
namespace {

// As they are arranged.
constexpr const char* fields[] = {"camera", "ratio", "speed", "region1", "region2", "z",      "x0",    "y0",
                                  "alpha",  "x1",    "y1",    "visible", "file",    "graph1", "graph2"};
constexpr const char* longest_button = "restore";
constexpr int most_fields_in_row = 3;
// Pixels at one step.
constexpr int name_width = 54;
constexpr int gap = 8;  // between columns

bool is_number(std::string_view field) {
    return field != "camera" && field != "visible";
}

std::int32_t& field_at(host::Engine& engine, const ScrollSurvey& scroll, const char* name) {
    return engine.global("scroll", scroll.number, name);
}

// What the longest value, or button, needs.
int width_of_values(const ScrollSurvey& scroll, host::Engine& engine) {
    int width = text_width(longest_button);
    for (const char* name : fields)
        if (is_number(name))
            width = std::max(width, text_width(std::to_string(field_at(engine, scroll, name))));
    return width + 2 * static_cast<int>(ImGui::GetStyle().FramePadding.x);
}

bool enter_pressed() {
    return ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Enter)) ||
           ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_KeyPadEnter));
}

}  // namespace

void Fields::keep_running(const Survey& survey) {
    std::array<std::int32_t, scroll2d::scroll_count> kept{};
    for (const ScrollSurvey& scroll : survey.scrolls) {
        const auto number = static_cast<std::size_t>(scroll.number);
        kept[number] = let_go_[number];
    }
    let_go_ = kept;
}

// A camera is a process: it can be let go of and given back, but no slider leads from one to another.
void Fields::draw_camera(std::int32_t& field, const ScrollSurvey& scroll, host::Engine& engine, int width) {
    std::int32_t& let_go = let_go_[static_cast<std::size_t>(scroll.number)];
    const ImVec2 size{static_cast<float>(width), 0};
    if (field != 0) {
        let_go = 0;
        if (ImGui::Button(engine.processes().exists(field) ? "let go" : "ended", size))
            std::swap(field, let_go);
    } else if (let_go == 0 || !engine.processes().exists(let_go)) {
        ImGui::TextColored(vec(faint), "none");
    } else if (ImGui::Button(longest_button, size)) {
        std::swap(field, let_go);
    }
}

// While it is typed the number is kept apart, since half of it is another number. Leaving it in any other way
// than by Enter forgets it.
void Fields::draw_number(std::int32_t& field, bool opacity) {
    const ImGuiID id = ImGui::GetID("##value");
    const bool was_typed = ImGui::TempInputIsActive(id);
    std::int32_t value = was_typed ? typed_ : field;
    const bool changed =
        opacity ? ImGui::SliderInt("##value", &value, 0, 255) : ImGui::DragInt("##value", &value);
    if (ImGui::TempInputIsActive(id))
        typed_ = value;
    else if (was_typed ? enter_pressed() : changed)
        field = value;
}

void Fields::draw_field(const char* name, std::int32_t& field, const ScrollSurvey& scroll,
                        host::Engine& engine, int width) {
    ImGui::SetNextItemWidth(static_cast<float>(width));
    if (is_number(name)) return draw_number(field, std::string_view(name) == "alpha");
    if (std::string_view(name) == "camera") return draw_camera(field, scroll, engine, width);
    bool yes = field > 0;
    if (ImGui::Checkbox("##value", &yes)) field = yes ? 1 : 0;
}

// As many fields in a row as leave the longest value its room; where not even one does, names and values
// have lines of their own.
void Fields::draw(const ScrollSurvey& scroll, host::Engine& engine) {
    const int named = px(name_width);
    const int room = static_cast<int>(ImGui::GetContentRegionAvail().x) + px(gap);
    const int in_row =
        std::min(most_fields_in_row, room / (named + width_of_values(scroll, engine) + px(gap)));
    const int column = room / std::max(1, in_row);
    const int start = static_cast<int>(ImGui::GetCursorPosX());
    for (int i = 0; i < static_cast<int>(std::size(fields)); ++i) {
        const int at = in_row > 0 ? start + i % in_row * column : start;
        if (at > start) ImGui::SameLine(static_cast<float>(at));
        ImGui::AlignTextToFramePadding();
        ImGui::TextColored(vec(faint), "%s", fields[i]);
        if (in_row > 0) ImGui::SameLine(static_cast<float>(at + named));
        ImGui::PushID(fields[i]);
        draw_field(fields[i], field_at(engine, scroll, fields[i]), scroll, engine,
                   column - px(gap) - (in_row > 0 ? named : 0));
        ImGui::PopID();
    }
}

}  // namespace player
