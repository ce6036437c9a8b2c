// The looks of the panels: colours and spaces, said once.
#pragma once

#include <imgui.h>

#include "player/common/picture.h"

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

// For the present ImGui context.
void apply_style();

}  // namespace player
