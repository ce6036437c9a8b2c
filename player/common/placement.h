// Where the game's screen lies in a room of another size.
#pragma once

namespace player {

// A rectangle in pixels.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The screen enlarged by a whole number, so that every pixel of the game is a square of the same size, in the
// middle of the room. A room that is smaller than the screen shows it shrunk, in its own proportions.
struct Placement {
    int scale = 1;  // 1 as well where it is shrunk
    bool shrunk = false;
    Area at;
};

// Sizes of 1 pixel and more; a smaller room counts as one pixel.
[[nodiscard]] Placement place_screen(int width, int height, const Area& room);

}  // namespace player
