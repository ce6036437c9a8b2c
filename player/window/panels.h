// What the window itself has to say: its keys, a script's error, that the game is paused. Drawn into the
// present frame of ImGui, over the game.
#pragma once

#include <string>

#include "player/common/placement.h"

namespace player {

// The table of the window's keys, in the middle.
void show_keys();
// An error that stopped the script, with how to go on.
void show_error(const std::string& message);
// Where a note lies in a room: at its top, in the middle.
[[nodiscard]] Area note_place(const std::string& text, const Area& room);
void show_note(const std::string& text, const Area& place);

}  // namespace player
