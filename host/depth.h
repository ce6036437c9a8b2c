// Pixels at the three colour depths, and between them and RGBA.
//
//    8 bits  an index into the palette
//   16 bits  [RRRRRGGG] [GGGBBBBB]: red in bits 11-15, green in 5-10, blue in 0-4
//   32 bits  bytes red, green, blue, alpha in the order of memory
//
// The pixel value 0 is transparent at 8 and 16 bits, and at 32 bits in a bitmap without an alpha flag. So an
// opaque black becomes the nearest other value.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace host {

class Bitmap;

struct Rgba {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;  // 0 transparent, 255 opaque

    bool operator==(const Rgba&) const = default;
};

// A picture without a depth: width * height colours, row after row.
struct Image {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<Rgba> pixels;
};

// The 256 colours of 8-bit pixels. Index 0 is transparent whatever its colour.
class Palette {
  public:
    // Index 0 black, 1-216 a cube of six levels a channel, 217-255 greys.
    Palette();
    [[nodiscard]] Rgba operator[](std::uint8_t index) const { return colours_[index]; }
    void set(std::uint8_t index, Rgba colour);
    // The index from 1 to 255 whose colour is nearest in squared distance; the lowest of equals.
    [[nodiscard]] std::uint8_t nearest(Rgba colour) const;

  private:
    std::array<Rgba, 256> colours_;
    mutable std::unordered_map<std::uint32_t, std::uint8_t> nearest_;  // answers so far, by colour
};

// 1, 2 or 4; a depth other than 8, 16 and 32 counts as 8.
[[nodiscard]] std::int32_t bytes_per_pixel(std::int32_t bits_per_pixel);

// The pixel value of a colour. Without `keep_alpha` a colour with alpha below 128 becomes 0 and any other
// becomes opaque; with it, 32-bit pixels keep the colour's alpha in byte 3 (8 and 16 bits have none to keep).
[[nodiscard]] std::uint32_t to_pixel(Rgba colour, std::int32_t bits_per_pixel, const Palette& palette,
                                     bool keep_alpha);

// The colour of a pixel value. Alpha is byte 3 with `keep_alpha` at 32 bits, else 0 for the value 0 and 255
// for others.
[[nodiscard]] Rgba from_pixel(std::uint32_t pixel, std::int32_t bits_per_pixel, const Palette& palette,
                              bool keep_alpha);

// The picture of a bitmap. Its alpha follows the bitmap's alpha flag and transparent value.
[[nodiscard]] Image to_image(const Bitmap& bitmap, const Palette& palette);

// The same with every pixel opaque, as a screen shows it; into an image whose memory is used again, or a new
// one.
[[nodiscard]] Image to_opaque_image(const Bitmap& bitmap, const Palette& palette);
void to_opaque_image(const Bitmap& bitmap, const Palette& palette, Image& image);

// Paints a picture of the bitmap's size over the bitmap, following its alpha flag. Errors: Error for another
// size.
void paint(Bitmap& bitmap, const Image& image, const Palette& palette);

}  // namespace host
