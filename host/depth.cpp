#include "host/depth.h"

#include <cstring>

#include "host/bitmap.h"
#include "host/error.h"

namespace host {

namespace {

std::uint32_t packed(Rgba c) {
    return c.r | std::uint32_t{c.g} << 8 | std::uint32_t{c.b} << 16 | std::uint32_t{c.a} << 24;
}

// A channel of 8 bits as one of 0..max and back, each to the nearest; back and forth is the identity on
// 0..max.
std::uint32_t narrow(std::uint8_t channel, std::uint32_t max) {
    return (channel * max + 127) / 255;
}
std::uint8_t widen(std::uint32_t field, std::uint32_t max) {
    return static_cast<std::uint8_t>((field * 255 + max / 2) / max);
}

std::uint32_t to_565(Rgba c) {
    const std::uint32_t pixel = narrow(c.r, 31) << 11 | narrow(c.g, 63) << 5 | narrow(c.b, 31);
    return pixel != 0 ? pixel : 1U << 5;  // the lowest green is nearer to black than the lowest red or blue
}

Rgba from_565(std::uint32_t pixel) {
    return {widen(pixel >> 11 & 31, 31), widen(pixel >> 5 & 63, 63), widen(pixel & 31, 31), 255};
}

// What from_pixel() tells, for the type of pixel that a depth has.
template <class Pixel>
Rgba colour_of(Pixel pixel, const Palette& palette, bool keep_alpha) {
    Rgba colour;
    if constexpr (sizeof pixel == 1) colour = palette[pixel];
    if constexpr (sizeof pixel == 2) colour = from_565(pixel);
    if constexpr (sizeof pixel == 4) {
        colour = {static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8),
                  static_cast<std::uint8_t>(pixel >> 16), static_cast<std::uint8_t>(pixel >> 24)};
        if (keep_alpha) return colour;
    }
    colour.a = pixel == 0 ? 0 : 255;
    return colour;
}

// All of the bitmap in one straight loop for its depth, since a game's screen takes this way at every frame.
template <class Pixel>
void convert_all(const Bitmap& bitmap, std::vector<Rgba>& colours, const Palette& palette, bool keep_alpha) {
    const std::byte* at = bitmap.bytes().data();
    for (Rgba& colour : colours) {
        Pixel pixel;
        std::memcpy(&pixel, at, sizeof pixel);
        at += sizeof pixel;
        colour = colour_of(pixel, palette, keep_alpha);
    }
}

bool keeps_alpha(const Bitmap& bitmap) {
    return bitmap.bits_per_pixel() == 32 && bitmap.record().alpha_flag != 0;
}

}  // namespace

Palette::Palette() {
    colours_[0] = {0, 0, 0, 0};
    for (std::size_t i = 0; i < 216; ++i)
        colours_[1 + i] = {widen(static_cast<std::uint32_t>(i / 36), 5),
                           widen(static_cast<std::uint32_t>(i / 6 % 6), 5),
                           widen(static_cast<std::uint32_t>(i % 6), 5), 255};
    for (std::size_t i = 217; i < 256; ++i) {
        const std::uint8_t grey = widen(static_cast<std::uint32_t>(i - 216), 40);
        colours_[i] = {grey, grey, grey, 255};
    }
}

void Palette::set(std::uint8_t index, Rgba colour) {
    colours_[index] = colour;
    nearest_.clear();
}

std::uint8_t Palette::nearest(Rgba colour) const {
    const auto [place, is_new] = nearest_.try_emplace(packed(colour) & 0xFFFFFFU, std::uint8_t{1});
    if (!is_new) return place->second;
    std::int32_t best = INT32_MAX;
    for (std::size_t i = 1; i < colours_.size(); ++i) {
        const std::int32_t dr = colours_[i].r - colour.r;
        const std::int32_t dg = colours_[i].g - colour.g;
        const std::int32_t db = colours_[i].b - colour.b;
        const std::int32_t distance = dr * dr + dg * dg + db * db;
        if (distance >= best) continue;
        best = distance;
        place->second = static_cast<std::uint8_t>(i);
    }
    return place->second;
}

std::int32_t bytes_per_pixel(std::int32_t bits_per_pixel) {
    return bits_per_pixel == 16 ? 2 : bits_per_pixel == 32 ? 4 : 1;
}

std::uint32_t to_pixel(Rgba colour, std::int32_t bits_per_pixel, const Palette& palette, bool keep_alpha) {
    if (bits_per_pixel == 32 && keep_alpha) return packed(colour);
    if (colour.a < 128) return 0;
    colour.a = 255;
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            return packed(colour);
        case 2:
            return to_565(colour);
        default:
            return palette.nearest(colour);
    }
}

Rgba from_pixel(std::uint32_t pixel, std::int32_t bits_per_pixel, const Palette& palette, bool keep_alpha) {
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            return colour_of(pixel, palette, keep_alpha);
        case 2:
            return colour_of(static_cast<std::uint16_t>(pixel), palette, keep_alpha);
        default:
            return colour_of(static_cast<std::uint8_t>(pixel), palette, keep_alpha);
    }
}

Image to_image(const Bitmap& bitmap, const Palette& palette) {
    Image image{bitmap.width(), bitmap.height(), {}};
    image.pixels.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    switch (bytes_per_pixel(bitmap.bits_per_pixel())) {
        case 4:
            convert_all<std::uint32_t>(bitmap, image.pixels, palette, keeps_alpha(bitmap));
            break;
        case 2:
            convert_all<std::uint16_t>(bitmap, image.pixels, palette, false);
            break;
        default:
            convert_all<std::uint8_t>(bitmap, image.pixels, palette, false);
    }
    return image;
}

Image to_opaque_image(const Bitmap& bitmap, const Palette& palette) {
    Image image = to_image(bitmap, palette);
    for (Rgba& colour : image.pixels) colour.a = 255;
    return image;
}

void paint(Bitmap& bitmap, const Image& image, const Palette& palette) {
    const std::size_t pixels =
        static_cast<std::size_t>(bitmap.width()) * static_cast<std::size_t>(bitmap.height());
    if (image.width != bitmap.width() || image.height != bitmap.height() || image.pixels.size() != pixels)
        throw Error("a picture of " + std::to_string(image.width) + " x " + std::to_string(image.height) +
                    " (" + std::to_string(image.pixels.size()) +
                    " pixels) cannot be painted over a bitmap of " + std::to_string(bitmap.width()) + " x " +
                    std::to_string(bitmap.height()));
    const bool alpha = keeps_alpha(bitmap);
    auto colour = image.pixels.begin();
    for (std::int32_t y = 0; y < image.height; ++y)
        for (std::int32_t x = 0; x < image.width; ++x)
            bitmap.set_pixel(x, y, to_pixel(*colour++, bitmap.bits_per_pixel(), palette, alpha));
}

}  // namespace host
