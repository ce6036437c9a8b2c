#include "host/depth.h"

#include <cstring>
#include <span>

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
constexpr std::uint8_t widen(std::uint32_t field, std::uint32_t max) {
    return static_cast<std::uint8_t>((field * 255 + max / 2) / max);
}

std::uint32_t to_565(Rgba c) {
    const std::uint32_t pixel = narrow(c.r, 31) << 11 | narrow(c.g, 63) << 5 | narrow(c.b, 31);
    return pixel != 0 ? pixel : 1U << 5;  // the lowest green is nearer to black than the lowest red or blue
}

// widen() of fields of 5 and 6 bits without a division, in lanes of 16 bits, for loops that become vectors.
constexpr std::uint16_t widen_5(std::uint16_t field) {
    return static_cast<std::uint16_t>(field * 527 + 23) >> 6;
}
constexpr std::uint16_t widen_6(std::uint16_t field) {
    return static_cast<std::uint16_t>(field * 259 + 33) >> 6;
}
static_assert([] {
    for (std::uint16_t field = 0; field < 64; ++field)
        if (widen_6(field) != widen(field, 63) || (field < 32 && widen_5(field) != widen(field, 31)))
            return false;
    return true;
}());

// The colour of a pixel as a word, red in the lowest byte. Alpha is 255, at 32 bits the pixel's own.
std::uint32_t colour_word(std::uint8_t pixel, const Palette& palette) {
    return packed(palette[pixel]) | 0xFF000000U;
}
std::uint32_t colour_word(std::uint16_t pixel, const Palette&) {
    const auto red_green = static_cast<std::uint16_t>(widen_5(pixel >> 11) | widen_6(pixel >> 5 & 63) << 8);
    const auto blue_alpha = static_cast<std::uint16_t>(widen_5(pixel & 31) | 0xFF00);
    return red_green | std::uint32_t{blue_alpha} << 16;
}
std::uint32_t colour_word(std::uint32_t pixel, const Palette&) {
    return pixel;
}

// What becomes of the alpha of a colour word.
constexpr auto opaque_alpha = [](std::uint32_t word, auto) { return word | 0xFF000000U; };
constexpr auto keyed_alpha = [](std::uint32_t word, auto pixel) {
    return (word & 0xFFFFFFU) | (pixel == 0 ? 0 : 0xFF000000U);
};
constexpr auto own_alpha = [](std::uint32_t word, auto) { return word; };

Rgba unpacked(std::uint32_t word) {
    return {static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8),
            static_cast<std::uint8_t>(word >> 16), static_cast<std::uint8_t>(word >> 24)};
}

// Calls `use` with a pixel value in the type of its depth.
template <class Use>
auto with_pixel(std::uint32_t pixel, std::int32_t bits_per_pixel, Use use) {
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            return use(pixel);
        case 2:
            return use(static_cast<std::uint16_t>(pixel));
        default:
            return use(static_cast<std::uint8_t>(pixel));
    }
}

// One straight loop, since a game's screen takes this way at every frame.
template <class Pixel, class Alpha>
void convert_pixels(const Bitmap& bitmap, const Palette& palette, Alpha alpha, std::vector<Rgba>& colours) {
    static_assert(sizeof(Rgba) == sizeof(std::uint32_t));
    const std::byte* __restrict from = bitmap.bytes().data();
    std::byte* __restrict to = std::as_writable_bytes(std::span(colours)).data();
    const std::size_t count = colours.size();
    for (std::size_t i = 0; i < count; ++i) {
        Pixel pixel;
        std::memcpy(&pixel, from + i * sizeof pixel, sizeof pixel);
        const std::uint32_t word = alpha(colour_word(pixel, palette), pixel);
        std::memcpy(to + i * sizeof word, &word, sizeof word);
    }
}

template <class Alpha>
void convert(const Bitmap& bitmap, const Palette& palette, Alpha alpha, Image& image) {
    image.width = bitmap.width();
    image.height = bitmap.height();
    image.pixels.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    with_pixel(0, bitmap.bits_per_pixel(),
               [&](auto pixel) { convert_pixels<decltype(pixel)>(bitmap, palette, alpha, image.pixels); });
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
    if (keep_alpha && bytes_per_pixel(bits_per_pixel) == 4) return unpacked(pixel);
    return with_pixel(pixel, bits_per_pixel,
                      [&](auto typed) { return unpacked(keyed_alpha(colour_word(typed, palette), typed)); });
}

Image to_image(const Bitmap& bitmap, const Palette& palette) {
    Image image;
    if (keeps_alpha(bitmap))
        convert(bitmap, palette, own_alpha, image);
    else
        convert(bitmap, palette, keyed_alpha, image);
    return image;
}

Image to_opaque_image(const Bitmap& bitmap, const Palette& palette) {
    Image image;
    to_opaque_image(bitmap, palette, image);
    return image;
}

void to_opaque_image(const Bitmap& bitmap, const Palette& palette, Image& image) {
    convert(bitmap, palette, opaque_alpha, image);
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
