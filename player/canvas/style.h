// The looks of the panels: colours, spaces, letters, said once.
#pragma once

#include <imgui.h>

#include "player/common/picture.h"
#include "player/common/placement.h"

namespace player {

inline constexpr Rgba surround{18, 20, 26, 255};  // around the game's screen
inline constexpr Rgba panel{28, 31, 40, 255};
inline constexpr Rgba ink{232, 235, 241, 255};
inline constexpr Rgba faint{140, 148, 164, 255};
inline constexpr Rgba accent{88, 166, 255, 255};
inline constexpr Rgba warning{255, 120, 96, 255};

inline ImU32 packed(Rgba c) {
    return IM_COL32(c.r, c.g, c.b, c.a);
}
inline ImVec4 vec(Rgba c) {
    return ImGui::ColorConvertU32ToFloat4(packed(c));
}

inline ImVec2 vec(int x, int y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

// Of every letter, since ImGui's own font is one of a fixed width. In pixels, at one step.
inline constexpr int letter_width = 7;
inline constexpr int letter_height = 13;

// How many times as large as usual panels are drawn, for a display of this size and the room that they have
// on it: whole steps, so that letters stay sharp; one on displays of the usual sizes and in small windows.
[[nodiscard]] int panel_steps(const Area& display, const Area& room);

// Letters and spaces of the present ImGui context, which has no frame begun.
void apply_style(int steps);

// So many pixels at one step, in the present frame of ImGui.
inline int px(int pixels) {
    return pixels * static_cast<int>(ImGui::GetFontSize()) / letter_height;
}
inline float fpx(int pixels) {
    return static_cast<float>(px(pixels));
}

}  // namespace player
