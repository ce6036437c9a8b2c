#include "host/bitmap.h"

#include <algorithm>
#include <cstring>

#include "host/depth.h"
#include "host/error.h"

namespace host {

namespace {

std::string size_text(std::int32_t width, std::int32_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

std::size_t size_in_bytes(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel) {
    if (width < 1 || height < 1 || std::int64_t{width} * height > INT32_MAX / bytes_per_pixel(bits_per_pixel))
        throw Error("a bitmap cannot be " + size_text(width, height) + " pixels");
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
           static_cast<std::size_t>(bytes_per_pixel(bits_per_pixel));
}

template <class Pixel>
void fill_pixels(std::byte* to, std::size_t count, std::uint32_t value) {
    const auto pixel = static_cast<Pixel>(value);
    for (std::size_t i = 0; i < count; ++i) std::memcpy(to + i * sizeof pixel, &pixel, sizeof pixel);
}

void fill_pixels(std::byte* to, std::size_t count, std::uint32_t value, std::int32_t bits_per_pixel) {
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            return fill_pixels<std::uint32_t>(to, count, value);
        case 2:
            return fill_pixels<std::uint16_t>(to, count, value);
        default:
            return fill_pixels<std::uint8_t>(to, count, value);
    }
}

}  // namespace

Bitmap::Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Fence fence)
    : width_(width),
      height_(height),
      bits_per_pixel_(bits_per_pixel),
      fence_(fence),
      pixels_(size_in_bytes(width, height, bits_per_pixel), fence) {
    MapRecord& r = record();
    r.width = width;
    r.height = height;
    r.pixels = pixels_.data();
    r.alpha_flag = 0;
    r.cpoint_count = 0;
    r.cpoints = nullptr;
}

std::int32_t Bitmap::pitch() const {
    return width_ * bytes_per_pixel(bits_per_pixel_);
}

std::span<std::byte> Bitmap::row(std::int32_t y) {
    const auto length = static_cast<std::size_t>(pitch());
    return bytes().subspan(offset_of(0, y), length);
}

std::size_t Bitmap::offset_of(std::int32_t x, std::int32_t y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_)
        throw Error("pixel (" + std::to_string(x) + ", " + std::to_string(y) + ") lies outside a bitmap of " +
                    size_text(width_, height_));
    const std::size_t index =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    return index * static_cast<std::size_t>(bytes_per_pixel(bits_per_pixel_));
}

// Pixels are little-endian in memory, as this processor's words are: the low bytes of the value are the
// pixel.
std::uint32_t Bitmap::pixel(std::int32_t x, std::int32_t y) const {
    std::uint32_t value = 0;
    std::memcpy(&value, pixels_.data() + offset_of(x, y),
                static_cast<std::size_t>(bytes_per_pixel(bits_per_pixel_)));
    return value;
}

void Bitmap::set_pixel(std::int32_t x, std::int32_t y, std::uint32_t value) {
    std::memcpy(pixels_.data() + offset_of(x, y), &value,
                static_cast<std::size_t>(bytes_per_pixel(bits_per_pixel_)));
}

void Bitmap::set_control_points(std::span<const __RVKPoint2D__> points) {
    points_.assign(points.begin(), points.end());
    record().cpoint_count = static_cast<std::int32_t>(points_.size());
    record().cpoints = points_.empty() ? nullptr : points_.data();
}

void Bitmap::fill(std::uint32_t value) {
    const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    fill_pixels(pixels_.data(), count, value, bits_per_pixel_);
}

void Bitmap::fill_row(std::int32_t x, std::int32_t y, std::int32_t count, std::uint32_t value) {
    if (count < 1) return;
    std::byte* const first = pixels_.data() + offset_of(x, y);
    if (count > width_ - x)
        throw Error("a row of a bitmap has no " + std::to_string(count) + " pixels there");
    fill_pixels(first, static_cast<std::size_t>(count), value, bits_per_pixel_);
}

void Bitmap::reformat(std::int32_t bits_per_pixel) {
    pixels_ = Memory(size_in_bytes(width_, height_, bits_per_pixel), fence_);
    bits_per_pixel_ = bits_per_pixel;
    record().pixels = pixels_.data();
}

void Bitmap::check(const std::string& which, std::vector<std::string>& violations) const {
    record_.check(which, violations);
    if (!pixels_.slack_untouched())
        violations.push_back("pixels " + which + ": memory beside them was written");
}

Map::Map(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Fence fence)
    : Bitmap(width, height, bits_per_pixel, fence) {
    entry().word0 = 1;
    entry().bitmap = &record();
}

void Map::check(const std::string& which, std::vector<std::string>& violations) const {
    entry_.check(which, violations);
    Bitmap::check(which, violations);
}

}  // namespace host
