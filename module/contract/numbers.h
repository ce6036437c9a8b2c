// Arithmetic on numbers that a script or the host wrote.
//
// Positions, movements, region edges and sizes may hold any 32-bit value. They are computed in 64 bits and
// brought back to 32 where they are stored, by one of the helpers below; nothing else in the module does raw
// arithmetic on them. World coordinates are a ring of 2^32 pixels, so a position wraps; an edge that cuts
// something (a view, a clip rectangle) saturates, since a wrapped edge would cut on the wrong side.
#pragma once

#include <cstdint>
#include <limits>

namespace scroll2d {

constexpr std::int32_t int32_min = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t int32_max = std::numeric_limits<std::int32_t>::max();

// The low 32 bits, as a signed number.
constexpr std::int32_t wrap32(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

// The nearest 32-bit number.
constexpr std::int32_t saturate32(std::int64_t value) {
    if (value < int32_min) return int32_min;
    if (value > int32_max) return int32_max;
    return static_cast<std::int32_t>(value);
}

// The remainder of value by modulus (at least 1) in 0 to modulus - 1.
constexpr std::int32_t floor_mod(std::int64_t value, std::int32_t modulus) {
    // A 64-bit division is a call on this processor, and nearly every value fits in 32 bits.
    const std::int32_t narrow = wrap32(value);
    const std::int32_t remainder =
        narrow == value ? narrow % modulus : static_cast<std::int32_t>(value % modulus);
    return remainder < 0 ? remainder + modulus : remainder;
}

// A wanted position on one axis, in pixels: anything where the map wraps, otherwise cut to the map's edges.
// The test for a negative position comes first: on a map smaller than the view a negative request gives 0
// and any other map_extent - view_extent, which is negative.
constexpr std::int64_t clamp_position(std::int64_t position, bool wraps, std::int32_t view_extent,
                                      std::int32_t map_extent) {
    if (wraps) return position;
    if (position < 0) return 0;
    if (position + view_extent >= map_extent) return std::int64_t{map_extent} - view_extent;
    return position;
}

// How far the background moves when the foreground moves by `movement` pixels: ratio is a divisor in per
// cent and not 0. Truncates toward zero.
constexpr std::int64_t scaled_movement(std::int64_t movement, std::int32_t ratio) {
    return movement * 100 / ratio;
}

// Pixels of a world coordinate in 1/resolution pixel; a resolution of 0 or below means whole pixels.
// Truncates toward zero.
constexpr std::int32_t whole_pixels(std::int32_t coordinate, std::int32_t resolution) {
    return resolution > 0 ? coordinate / resolution : coordinate;
}

}  // namespace scroll2d
