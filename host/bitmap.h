// Bitmaps: the screen, and the maps that files hold.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/memory.h"
#include "host/patterned.h"

namespace host {

// A bitmap with its pixels and control points, and the record that the module sees. What a test writes into
// the record (a false width, a null pixel address) does not disturb the bitmap's own idea of its geometry.
class Bitmap {
  public:
    // All pixels 0. `width` and `height` in pixels, at least 1. Errors: Error for a size out of range.
    Bitmap(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Fence fence);

    [[nodiscard]] MapRecord& record() { return record_.get(); }
    [[nodiscard]] const MapRecord& record() const { return record_.get(); }
    [[nodiscard]] std::int32_t width() const { return width_; }
    [[nodiscard]] std::int32_t height() const { return height_; }
    [[nodiscard]] std::int32_t bits_per_pixel() const { return bits_per_pixel_; }
    [[nodiscard]] std::int32_t pitch() const;  // bytes per row, no gaps between rows

    [[nodiscard]] std::span<std::byte> bytes() { return pixels_.bytes(); }
    [[nodiscard]] std::span<const std::byte> bytes() const { return pixels_.bytes(); }
    [[nodiscard]] std::span<std::byte> row(std::int32_t y);

    // Errors of these: Error for a place outside the bitmap.
    [[nodiscard]] std::uint32_t pixel(std::int32_t x, std::int32_t y) const;
    void set_pixel(std::int32_t x, std::int32_t y, std::uint32_t value);
    void fill_row(std::int32_t x, std::int32_t y, std::int32_t count, std::uint32_t value);

    // Point 0 is the reference point. Points may lie outside the bitmap.
    void set_control_points(std::span<const __RVKPoint2D__> points);
    void fill(std::uint32_t value);
    void set_alpha_flag(bool alpha) { record().alpha_flag = alpha ? 1 : 0; }
    // Goes over to another depth: new memory, all pixels 0.
    void reformat(std::int32_t bits_per_pixel);

    void check(const std::string& which, std::vector<std::string>& violations) const;

  private:
    [[nodiscard]] std::size_t offset_of(std::int32_t x, std::int32_t y) const;

    Patterned<MapRecord> record_;
    std::int32_t width_;
    std::int32_t height_;
    std::int32_t bits_per_pixel_;
    Fence fence_;
    Memory pixels_;
    std::vector<__RVKPoint2D__> points_;
};

// A bitmap at its place in a file.
class Map : public Bitmap {
  public:
    Map(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel, Fence fence);
    // Word 0 is 1 and `bitmap` the map's own record, until somebody writes otherwise.
    [[nodiscard]] MapEntry& entry() { return entry_.get(); }
    void check(const std::string& which, std::vector<std::string>& violations) const;

  private:
    Patterned<MapEntry> entry_;
};

}  // namespace host
