#include <cstdio>
#include <stdexcept>

#include "player/desktop.h"

namespace player {

std::optional<int> play_in_window(const Options&) {
    std::fprintf(stderr, "this player was built without a window; drawing pictures instead\n");
    return std::nullopt;
}

PictureStep inspected_pictures(host::Engine&, int) {
    throw std::runtime_error("--inspect: this player was built without the inspector");
}

}  // namespace player
