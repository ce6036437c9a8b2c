#include "player/inspector/parts.h"

namespace player {
namespace {

// A click hides the kind of mark, or shows it again.
void draw_kind(const MarkKind& kind, const Area& at, bool& on) {
    ImGui::SetCursorScreenPos(vec(at.x, at.y));
    if (ImGui::InvisibleButton(kind.name, vec(at.width, at.height))) on = !on;
    if (ImGui::IsItemHovered()) ImGui::SetTooltip("%s: %s", kind.name, kind.meaning);
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const Area swatch{at.x, at.y + px(1), px(legend_swatch), px(legend_swatch)};
    if (on)
        fill(list, swatch, packed(kind.colour));
    else
        outline(list, swatch, px(1), packed(kind.colour));
    list.AddText(vec(at.x + px(legend_swatch + legend_gap), at.y), packed(on ? ink : faint), kind.name);
}

}  // namespace

void begin_part(const char* name, const Area& area) {
    ImGui::SetNextWindowPos(vec(area.x, area.y));
    ImGui::SetNextWindowSize(vec(area.width, area.height));
    ImGui::Begin(name, nullptr,
                 ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove |
                     ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoNav |
                     ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoFocusOnAppearing);
}

void draw_legend(const Area& area, Shown& shown) {
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, {0, 0});
    begin_part("legend", area);
    ImGui::PopStyleVar();
    std::vector<Area> places = legend_places(area.width, px(1));
    for (Area& at : places) {
        at.x += area.x;
        at.y += area.y;
    }
    for (const MarkKind& kind : mark_kinds) {
        const auto number = static_cast<std::size_t>(kind.mark);
        draw_kind(kind, places[number], shown.kinds[number]);
    }
    const Area& at = places.back();
    ImDrawList& list = *ImGui::GetWindowDrawList();
    dashes(list, {at.x, at.y + px(6), px(legend_dashes), px(2)}, packed(repeating));
    list.AddText(vec(at.x + px(legend_dashes + legend_gap), at.y), packed(ink), repeating_name);
    ImGui::End();
}

}  // namespace player
