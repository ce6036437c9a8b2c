// Copies rectangles out of an endlessly repeated map: the one place where map pixels are read.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/numbers.h"
#include "scroll/scroll_table.h"

namespace scroll2d {

// Copies rows of `bytes` bytes, at least one chunk, in chunks of a size known to the compiler; the last chunk
// may overlap the one before it.
template <std::size_t chunk>
void copy_in_chunks(std::uint8_t* to, std::ptrdiff_t to_stride, const std::uint8_t* from,
                    std::ptrdiff_t from_stride, std::size_t bytes, std::int32_t rows) {
    const std::size_t last = bytes - chunk;
    for (; rows > 0; --rows, to += to_stride, from += from_stride) {
        for (std::size_t i = 0; i < last; i += chunk) std::memcpy(to + i, from + i, chunk);
        std::memcpy(to + last, from + last, chunk);
    }
}

// Copies a block of bytes, row by row from the top. Narrow blocks are what a moving scroll copies at every
// frame, a column or a few dozen at a time: there a call for each row would cost more than its bytes.
inline void copy_bytes(std::uint8_t* to, std::ptrdiff_t to_stride, const std::uint8_t* from,
                       std::ptrdiff_t from_stride, std::size_t bytes, std::int32_t rows) {
    constexpr std::size_t wide = 256;
    if (bytes >= wide) {
        for (; rows > 0; --rows, to += to_stride, from += from_stride) std::memcpy(to, from, bytes);
    } else if (bytes >= 16) {
        copy_in_chunks<16>(to, to_stride, from, from_stride, bytes, rows);
    } else if (bytes >= 8) {
        copy_in_chunks<8>(to, to_stride, from, from_stride, bytes, rows);
    } else if (bytes >= 4) {
        copy_in_chunks<4>(to, to_stride, from, from_stride, bytes, rows);
    } else if (bytes >= 2) {
        copy_in_chunks<2>(to, to_stride, from, from_stride, bytes, rows);
    } else if (bytes == 1) {
        copy_in_chunks<1>(to, to_stride, from, from_stride, bytes, rows);
    }
}

// Copies columns x rows pixels, row by row from the top; both strides in pixels.
template <class Pixel>
void copy_block(Pixel* to, std::ptrdiff_t to_stride, const Pixel* from, std::ptrdiff_t from_stride,
                std::int32_t columns, std::int32_t rows) {
    constexpr std::ptrdiff_t size = sizeof(Pixel);
    copy_bytes(reinterpret_cast<std::uint8_t*>(to), to_stride * size,
               reinterpret_cast<const std::uint8_t*>(from), from_stride * size,
               static_cast<std::size_t>(columns) * sizeof(Pixel), rows);
}

// Repeats the first `period` pixels of a row up to its end, doubling what is there each time.
template <class Pixel>
void repeat_pixels(Pixel* row, std::int32_t period, std::int32_t columns) {
    for (std::int32_t done = period; done < columns;) {
        const std::int32_t run = std::min(done, columns - done);
        std::memcpy(row + done, row, static_cast<std::size_t>(run) * sizeof(Pixel));
        done += run;
    }
}

// Copies the rectangle of a plane's map at (x, y), which wraps on both axes, to rows `stride` pixels apart.
// Neither the map nor the rectangle may be empty. A map smaller than the rectangle is read once and repeated
// from there, so that a small map costs no more than a large one.
template <class Pixel>
void copy_from_map(const Plane& plane, std::int64_t x, std::int64_t y, std::int32_t columns,
                   std::int32_t rows, Pixel* to, std::ptrdiff_t stride) {
    const auto* const pixels = reinterpret_cast<const Pixel*>(plane.map_pixels);
    const std::ptrdiff_t map_stride = plane.map_width;
    const std::int32_t map_column = floor_mod(x, plane.map_width);
    const std::int32_t map_row = floor_mod(y, plane.map_height);
    const std::int32_t once_columns = std::min(columns, plane.map_width);
    const std::int32_t once_rows = std::min(rows, plane.map_height);

    // Up to four blocks, cut where the map begins again.
    const std::int32_t left = std::min(once_columns, plane.map_width - map_column);
    const std::int32_t upper = std::min(once_rows, plane.map_height - map_row);
    const auto copy_band = [&](Pixel* band, std::int32_t from_row, std::int32_t band_rows) {
        const Pixel* const from = pixels + from_row * map_stride;
        copy_block(band, stride, from + map_column, map_stride, left, band_rows);
        copy_block(band + left, stride, from, map_stride, once_columns - left, band_rows);
    };
    copy_band(to, map_row, upper);
    copy_band(to + upper * stride, 0, once_rows - upper);

    if (once_columns < columns) {
        for (std::int32_t row = 0; row < once_rows; ++row)
            repeat_pixels(to + row * stride, once_columns, columns);
    }
    const std::ptrdiff_t period = once_rows * stride;
    copy_block(to + period, stride, to, stride, columns, rows - once_rows);
}

}  // namespace scroll2d
