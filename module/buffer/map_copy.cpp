#include "module/buffer/map_copy.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/contract/numbers.h"

namespace scroll2d {
namespace {

// Copies rows of `bytes` bytes, at least one chunk, in chunks of a size known to the compiler; the last chunk
// may overlap the one before it. Not inlined, so that each loop has the few registers to itself.
template <std::size_t chunk>
__attribute__((noinline)) void copy_in_chunks(std::uint8_t* to, std::ptrdiff_t to_stride,
                                              const std::uint8_t* from, std::ptrdiff_t from_stride,
                                              std::size_t bytes, std::int32_t rows) {
    const std::size_t last = bytes - chunk;
    for (; rows > 0; --rows, to += to_stride, from += from_stride) {
        for (std::size_t i = 0; i < last; i += chunk) std::memcpy(to + i, from + i, chunk);
        std::memcpy(to + last, from + last, chunk);
    }
}

// Copies a block of bytes, row by row from the top. A call of memcpy pays on long rows only. Where
// rows follow one another in `to` without a gap, the processor works on one while it ends the one before, and
// a call pays later than in a strip of longer rows.
void copy_block(std::uint8_t* to, std::ptrdiff_t to_stride, const std::uint8_t* from,
                std::ptrdiff_t from_stride, std::size_t bytes, std::int32_t rows) {
    const bool without_gaps = to_stride == static_cast<std::ptrdiff_t>(bytes);
    const std::size_t longest_short_row = without_gaps ? 2560 : 640;
    if (bytes > longest_short_row) {
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

// Repeats the first `period` bytes of a row up to its end, doubling what is there each time.
void repeat_bytes(std::uint8_t* row, std::size_t period, std::size_t bytes) {
    for (std::size_t done = period; done < bytes;) {
        const std::size_t run = std::min(done, bytes - done);
        std::memcpy(row + done, row, run);
        done += run;
    }
}

}  // namespace

void copy_from_map(const PlaneMap& map, const MapRectangle& r, std::int32_t pixel_bytes, std::uint8_t* to,
                   std::int32_t width) {
    const auto bytes = [pixel_bytes](std::int32_t pixels) {
        return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixel_bytes);
    };
    const auto stride = static_cast<std::ptrdiff_t>(bytes(width));
    const auto map_stride = static_cast<std::ptrdiff_t>(bytes(map.width));
    const std::int32_t map_column = floor_mod(r.x, map.width);
    const std::int32_t map_row = floor_mod(r.y, map.height);
    const std::int32_t once_columns = std::min(r.columns, map.width);
    const std::int32_t once_rows = std::min(r.rows, map.height);

    // Up to four blocks, cut where the map begins again.
    const std::int32_t left = std::min(once_columns, map.width - map_column);
    const std::int32_t upper = std::min(once_rows, map.height - map_row);
    const auto copy_band = [&](std::uint8_t* band, std::int32_t from_row, std::int32_t rows) {
        const std::uint8_t* const from = map.pixels + from_row * map_stride;
        copy_block(band, stride, from + bytes(map_column), map_stride, bytes(left), rows);
        copy_block(band + bytes(left), stride, from, map_stride, bytes(once_columns - left), rows);
    };
    copy_band(to, map_row, upper);
    copy_band(to + upper * stride, 0, once_rows - upper);

    if (once_columns < r.columns) {
        for (std::int32_t row = 0; row < once_rows; ++row) {
            repeat_bytes(to + row * stride, bytes(once_columns), bytes(r.columns));
        }
    }
    copy_block(to + once_rows * stride, stride, to, stride, bytes(r.columns), r.rows - once_rows);
}

}  // namespace scroll2d
