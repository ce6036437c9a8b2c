#include "player/canvas/style.h"

#include <algorithm>

namespace player {
namespace {

// The built-in font is drawn for one size; at whole multiples of it its letters are squares of pixels again.
void choose_letters(int size) {
    ImFontConfig font;
    font.SizePixels = static_cast<float>(size);
    font.OversampleH = font.OversampleV = 1;
    font.PixelSnapH = true;
    ImGui::GetIO().Fonts->Clear();
    ImGui::GetIO().Fonts->AddFontDefault(&font);
}

}  // namespace

int panel_steps(const Area& display, const Area& room) {
    constexpr int wide = 1800, high = 1000;  // of a display for each step: 3840 x 2160 has two
    constexpr int least_width = 600, least_height = 400;
    return std::max(1, std::min({display.width / wide, display.height / high, room.width / least_width,
                                 room.height / least_height}));
}

void apply_style(int steps) {
    choose_letters(letter_height * steps);
    ImGuiStyle& style = ImGui::GetStyle();
    style = ImGuiStyle();
    ImGui::StyleColorsDark();
    // Edges on whole pixels: the panels stand beside pixel art.
    style.AntiAliasedLines = false;
    style.AntiAliasedFill = false;
    style.WindowRounding = style.FrameRounding = style.GrabRounding = style.ScrollbarRounding = 0;
    style.WindowBorderSize = 0;
    style.FramePadding = {5, 2};
    style.ItemSpacing = {6, 4};
    style.WindowPadding = {10, 8};
    style.ScaleAllSizes(static_cast<float>(steps));
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
