// Copies stretches of an endlessly repeated map: the one place where map pixels are read.
#pragma once

#include <cstdint>
#include <cstring>

#include "module/numbers.h"
#include "scroll/scroll_table.h"

namespace scroll2d {

// Reads `columns` pixels a row from map column x on, rows downwards from map row y on; both wrap. Neither the
// map nor the stretch may be empty.
template <class Pixel>
class MapReader {
  public:
    MapReader(const Plane& plane, std::int64_t x, std::int64_t y, std::int32_t columns)
        : pixels_(reinterpret_cast<const Pixel*>(plane.map_pixels)),
          map_width_(plane.map_width),
          map_height_(plane.map_height),
          column_(floor_mod(x, plane.map_width)),
          row_(floor_mod(y, plane.map_height)),
          columns_(columns) {}

    // Copies the present map row's stretch to `to` and goes on to the next map row.
    void copy_row(Pixel* to) {
        const Pixel* const map_row = pixels_ + offset(row_);
        std::int32_t from = column_;
        for (std::int32_t left = columns_; left > 0;) {
            const std::int32_t run = left < map_width_ - from ? left : map_width_ - from;
            copy_run(to, map_row + from, run);
            to += run;
            left -= run;
            from = 0;
        }
        if (++row_ == map_height_) row_ = 0;
    }

  private:
    std::size_t offset(std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(map_width_);
    }

    // A call costs more than a copied pixel, and single columns are the commonest stretch of all.
    static void copy_run(Pixel* to, const Pixel* from, std::int32_t run) {
        if (run == 1) {
            *to = *from;
        } else {
            std::memcpy(to, from, static_cast<std::size_t>(run) * sizeof(Pixel));
        }
    }

    const Pixel* pixels_;
    std::int32_t map_width_;
    std::int32_t map_height_;
    std::int32_t column_;
    std::int32_t row_;
    std::int32_t columns_;
};

}  // namespace scroll2d
