// Numbers that scripts pass and write, and what they mean.
#pragma once

#include <cstdint>

namespace scroll2d {

constexpr std::int32_t scroll_count = 10;

// Script constants.
constexpr std::int32_t c_scroll = 1;     // coordinate type of processes that live in scroll coordinates
constexpr std::int32_t all_scroll = -1;  // as a scroll number: 0 to 9 in turn
constexpr std::int32_t scroll_normal = 0;
constexpr std::int32_t scroll_layers = 1;
constexpr std::int32_t scroll_normal_key = 2;
constexpr std::int32_t scroll_layers_key = 3;

// Wrap bits of a scroll's flags: the plane repeats on that axis.
constexpr std::int32_t wrap_plane1_x = 1;
constexpr std::int32_t wrap_plane1_y = 2;
constexpr std::int32_t wrap_plane2_x = 4;
constexpr std::int32_t wrap_plane2_y = 8;

// The last number that may name a follow region; any above, and any below 0, means none.
constexpr std::int32_t last_follow_region = 65536;

// In the layer modes plane 1 is drawn among the scroll's sprites.
constexpr bool is_layer_mode(std::int32_t mode) {
    return mode == scroll_layers || mode == scroll_layers_key;
}

}  // namespace scroll2d
