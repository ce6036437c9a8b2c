#include "player/inspector/parts.h"

namespace player {

void begin_part(const char* name, const Area& area) {
    ImGui::SetNextWindowPos({static_cast<float>(area.x), static_cast<float>(area.y)});
    ImGui::SetNextWindowSize({static_cast<float>(area.width), static_cast<float>(area.height)});
    ImGui::Begin(name, nullptr,
                 ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove |
                     ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoNav |
                     ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoFocusOnAppearing);
}

void draw_legend(const Area& area, Shown& shown) {
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, {10, 5});
    begin_part("legend", area);
    ImGui::PopStyleVar();
    constexpr float swatch = 11, gap = 18;
    constexpr const char* repeats = "map repeats";
    float needed = 2 * 10 + 34 + ImGui::CalcTextSize(repeats).x;
    for (const MarkKind& kind : mark_kinds) needed += swatch + 6 + ImGui::CalcTextSize(kind.name).x + gap;
    const bool named = needed <= static_cast<float>(area.width);  // else a tooltip has to do
    for (const MarkKind& kind : mark_kinds) {
        bool& on = shown.kinds[static_cast<int>(kind.mark)];
        const ImVec2 at = ImGui::GetCursorScreenPos();
        const ImVec2 text = ImGui::CalcTextSize(kind.name);
        if (ImGui::InvisibleButton(kind.name, {swatch + (named ? 6 + text.x : 0), text.y})) on = !on;
        if (ImGui::IsItemHovered()) ImGui::SetTooltip("%s: %s", kind.name, kind.meaning);
        ImDrawList& list = *ImGui::GetWindowDrawList();
        const Area box{static_cast<int>(at.x), static_cast<int>(at.y) + 1, static_cast<int>(swatch),
                       static_cast<int>(swatch)};
        if (on)
            fill(list, box, packed(kind.colour));
        else
            outline(list, box, 1, packed(kind.colour));
        if (named) list.AddText({at.x + swatch + 6, at.y}, packed(on ? ink : faint), kind.name);
        ImGui::SameLine(0, named ? gap : 6);
    }
    if (named) {
        const ImVec2 at = ImGui::GetCursorScreenPos();
        dashes(*ImGui::GetWindowDrawList(), {static_cast<int>(at.x), static_cast<int>(at.y) + 6, 28, 2},
               packed(repeating));
        ImGui::GetWindowDrawList()->AddText({at.x + 34, at.y}, packed(ink), repeats);
    }
    ImGui::End();
}

}  // namespace player
