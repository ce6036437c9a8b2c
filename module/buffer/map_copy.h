// Copies rectangles out of an endlessly repeated map: the one place where map pixels are read.
#pragma once

#include <cstdint>

#include "module/state/plane.h"

namespace scroll2d {

// A rectangle of an endlessly repeated map, in pixels; columns and rows are 1 or more.
struct MapRectangle {
    std::int64_t x;
    std::int64_t y;
    std::int32_t columns;
    std::int32_t rows;
};

// Copies a rectangle of a map to rows of a buffer that are `width` pixels apart. The map is not
// empty. A map smaller than the rectangle is read once and repeated from there, so that a small map costs no
// more than a large one.
void copy_from_map(const PlaneMap& map, const MapRectangle& rectangle, std::int32_t pixel_bytes,
                   std::uint8_t* to, std::int32_t width);

}  // namespace scroll2d
