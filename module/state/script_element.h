// What a script sees of one scroll.
#pragma once

#include <cstdint>

namespace scroll2d {

// One element of the script global scroll[10], laid out by the declaration text of the registration, which
// gives the same defaults; stopping a scroll restores them.
struct ScrollScriptStruct {
    std::int32_t camera = 0;    // id of the process to follow; 0: go where x0, y0, x1, y1 say
    std::int32_t ratio = 200;   // plane 2 moves by plane 1's movement x 100 / ratio; 0: not at all
    std::int32_t file = 0;      // mirror of the record; scroll_refresh takes a changed value
    std::int32_t graph1 = 0;    // likewise, when positive
    std::int32_t graph2 = 0;    // likewise
    std::int32_t region1 = -1;  // inner follow region of the camera; outside 0 to last_follow_region: none
    std::int32_t region2 = -1;  // outer follow region; likewise
    std::int32_t speed = 0;     // > 0: pixels per move and axis while the camera is inside region2
    std::int32_t x0 = 0;        // position of plane 1: the target without a camera, written back
    std::int32_t y0 = 0;
    std::int32_t x1 = 0;  // position of plane 2
    std::int32_t y1 = 0;
    std::int32_t z = 512;      // depth of the scroll
    std::int32_t alpha = 255;  // opacity; clamped to 0-255 at every move
    std::int32_t visible = 1;  // drawn while > 0
};
static_assert(sizeof(ScrollScriptStruct) == 60, "fifteen fields, elements back to back");

constexpr ScrollScriptStruct script_defaults;

}  // namespace scroll2d
