// Text in a small built-in font, drawn straight into bitmaps.
#pragma once

#include <cstdint>
#include <string>

#include "host/bitmap.h"

namespace player {

struct TextSize {
    int width = 0;  // pixels
    int height = 0;
};

inline constexpr int largest_text_scale = 64;
inline constexpr std::size_t longest_text =
    10'000;  // characters; what is drawn takes a thousand times the room

// The extent of a text (ASCII; lines end with \n) at a whole-number scale of 1 or more.
TextSize text_size(const std::string& text, int scale);

// Draws with the top left corner at (x, y) in one pixel value; what lies outside the bitmap is cut.
void draw_text(host::Bitmap& bitmap, int x, int y, const std::string& text, std::uint32_t pixel, int scale);

// A filled rectangle, cut likewise. The one that text is made of.
void draw_box(host::Bitmap& bitmap, std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h,
              std::uint32_t pixel);

}  // namespace player
