// Copies rectangles out of an endlessly repeated map: the one place where map pixels are read.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/numbers.h"
#include "scroll/scroll_table.h"

namespace scroll2d {

// Copies columns x rows pixels; both strides in pixels. Narrow rectangles are what a moving scroll copies at
// every frame, a column or a few at a time: there a call for each row would cost more than its pixels.
template <class Pixel>
void copy_block(Pixel* to, std::ptrdiff_t to_stride, const Pixel* from, std::ptrdiff_t from_stride,
                std::int32_t columns, std::int32_t rows) {
    constexpr std::int32_t narrow = 16 / sizeof(Pixel);
    if (columns == 1) {
        for (; rows > 0; --rows, to += to_stride, from += from_stride) *to = *from;
    } else if (columns < narrow) {
        for (; rows > 0; --rows, to += to_stride, from += from_stride) {
            for (std::int32_t i = 0; i < columns; ++i) to[i] = from[i];
        }
    } else {
        const std::size_t bytes = static_cast<std::size_t>(columns) * sizeof(Pixel);
        for (; rows > 0; --rows, to += to_stride, from += from_stride) std::memcpy(to, from, bytes);
    }
}

// Copies the rectangle of a plane's map at (x, y), which wraps on both axes, to rows `stride` pixels apart.
// Neither the map nor the rectangle may be empty. Cut where the map repeats: nothing wraps inside a block.
template <class Pixel>
void copy_from_map(const Plane& plane, std::int64_t x, std::int64_t y, std::int32_t columns,
                   std::int32_t rows, Pixel* to, std::ptrdiff_t stride) {
    const auto* const pixels = reinterpret_cast<const Pixel*>(plane.map_pixels);
    const std::ptrdiff_t map_stride = plane.map_width;
    std::int32_t map_row = floor_mod(y, plane.map_height);
    const std::int32_t first_column = floor_mod(x, plane.map_width);
    while (rows > 0) {
        const std::int32_t block_rows = std::min(rows, plane.map_height - map_row);
        const Pixel* const from = pixels + map_row * map_stride;
        std::int32_t map_column = first_column;
        for (std::int32_t done = 0; done < columns;) {
            const std::int32_t block_columns = std::min(columns - done, plane.map_width - map_column);
            copy_block(to + done, stride, from + map_column, map_stride, block_columns, block_rows);
            done += block_columns;
            map_column = 0;
        }
        to += block_rows * stride;
        rows -= block_rows;
        map_row = 0;
    }
}

}  // namespace scroll2d
