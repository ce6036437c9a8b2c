// The routines that touch pixels, one set per screen colour depth: nine, and two that make many steps of a
// shift at once. Everything else in the module calls them through these pointers, so that no other code knows
// a depth. routine_table.cpp defines and sets them. Null until the init hook has chosen a depth.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace scroll2d {

// Fills a plane of the current scroll for a position and tells the script nothing: set_scroll() does both.
extern void (*setting_scroll)(std::int32_t plane, std::int32_t x, std::int32_t y);

// Draw the current scroll into its destination.
extern void (*draw_scroll_simple)();
extern void (*draw_scroll_parallax)();
extern std::int32_t (*draw_scroll_layer_plane1)(__RVKBlit2D__*);
extern std::int32_t (*draw_scroll_layer_plane2)(__RVKBlit2D__*);

// Move a plane's picture by one pixel; (x, y) is the position that the buffer shows before the step.
extern void (*moving_scroll_left)(std::int32_t plane, std::int32_t x, std::int32_t y);
extern void (*moving_scroll_right)(std::int32_t plane, std::int32_t x, std::int32_t y);
extern void (*moving_scroll_up)(std::int32_t plane, std::int32_t x, std::int32_t y);
extern void (*moving_scroll_down)(std::int32_t plane, std::int32_t x, std::int32_t y);

// Many steps at once, right (columns > 0) or left, down (rows > 0) or up: they leave what as many single
// steps leave.
extern void (*moving_scroll_columns)(std::int32_t plane, std::int32_t x, std::int32_t y,
                                     std::int32_t columns);
extern void (*moving_scroll_rows)(std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t rows);

// Bytes per pixel of the routines above: 1, 2 or 4.
extern std::int32_t routine_pixel_bytes;

// Chooses the routines for the screen's depth: 16, 32, or 8 for any other value.
void set_scroll2D_drawing_routines();

}  // namespace scroll2d
