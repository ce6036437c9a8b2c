#include "player/canvas/style.h"

namespace player {

void apply_style() {
    ImGui::StyleColorsDark();
    ImGuiStyle& style = ImGui::GetStyle();
    // Edges on whole pixels: the panels stand beside pixel art.
    style.AntiAliasedLines = false;
    style.AntiAliasedFill = false;
    style.WindowRounding = style.FrameRounding = style.GrabRounding = style.ScrollbarRounding = 0;
    style.WindowBorderSize = 0;
    style.FramePadding = {5, 2};
    style.ItemSpacing = {6, 4};
    style.WindowPadding = {10, 8};
    const auto set = [&style](ImGuiCol where, Rgba colour) { style.Colors[where] = vec(colour); };
    set(ImGuiCol_Text, ink);
    set(ImGuiCol_TextDisabled, faint);
    set(ImGuiCol_WindowBg, panel);
    set(ImGuiCol_FrameBg, {44, 49, 62, 255});
    set(ImGuiCol_FrameBgHovered, {58, 65, 82, 255});
    set(ImGuiCol_FrameBgActive, {66, 76, 98, 255});
    set(ImGuiCol_SliderGrab, {72, 112, 168, 255});
    set(ImGuiCol_SliderGrabActive, accent);
    set(ImGuiCol_CheckMark, accent);
    set(ImGuiCol_Separator, {54, 60, 75, 255});
    set(ImGuiCol_TitleBgActive, {44, 49, 62, 255});
}

}  // namespace player
