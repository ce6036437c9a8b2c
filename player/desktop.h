// What takes SDL and Dear ImGui: the window, and the inspector in pictures. desktop.cpp has it; in a player
// built without those libraries no_desktop.cpp stands in its place.
#pragma once

#include <functional>
#include <optional>

#include "host/engine.h"
#include "player/common/options.h"
#include "player/common/picture.h"

namespace player {

// Plays in a window, and returns the exit status; nothing when no window can be opened, and the reason has
// been printed.
std::optional<int> play_in_window(const Options& options);

// Makes of the game's picture another one; to be called once for every frame, after it was drawn.
using PictureStep = std::function<Picture(const Picture&)>;

// The inspector around the game, which is enlarged `scale` times; 1: so that it can be read. To be asked for
// before the script's first turn. Errors: std::runtime_error in a player without it.
PictureStep inspected_pictures(host::Engine& engine, int scale);

}  // namespace player
