#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/render/plane_routines.h"
#include "module/state/host_lookups.h"
#include "module/state/routine_pointers.h"

namespace scroll2d {

void (*setting_scroll)(std::int32_t, std::int32_t, std::int32_t);
void (*draw_scroll_simple)();
void (*draw_scroll_parallax)();
std::int32_t (*draw_scroll_layer_plane1)(__RVKBlit2D__*);
std::int32_t (*draw_scroll_layer_plane2)(__RVKBlit2D__*);
void (*moving_scroll_left)(std::int32_t, std::int32_t, std::int32_t);
void (*moving_scroll_right)(std::int32_t, std::int32_t, std::int32_t);
void (*moving_scroll_up)(std::int32_t, std::int32_t, std::int32_t);
void (*moving_scroll_down)(std::int32_t, std::int32_t, std::int32_t);
void (*moving_scroll_columns)(std::int32_t, std::int32_t, std::int32_t, std::int32_t);
void (*moving_scroll_rows)(std::int32_t, std::int32_t, std::int32_t, std::int32_t);
std::int32_t routine_pixel_bytes;

namespace {

// One row per depth: bytes per pixel, then the routines in the order of routine_pointers.h.
struct RoutineRow {
    std::int32_t pixel_bytes;
    decltype(setting_scroll) setting;
    decltype(draw_scroll_simple) simple;
    decltype(draw_scroll_parallax) parallax;
    decltype(draw_scroll_layer_plane1) layer_plane1;
    decltype(draw_scroll_layer_plane2) layer_plane2;
    decltype(moving_scroll_left) left;
    decltype(moving_scroll_right) right;
    decltype(moving_scroll_up) up;
    decltype(moving_scroll_down) down;
    decltype(moving_scroll_columns) columns;
    decltype(moving_scroll_rows) rows;
};

// clang-format off
const RoutineRow routine_rows[] = {
    {2, setting_scroll_16bits,
     draw_scroll_simple_16bits, draw_scroll_parallax_16bits,
     draw_scroll_layer_plane1_16bits, draw_scroll_layer_plane2_16bits,
     moving_scroll_left_16bits, moving_scroll_right_16bits, moving_scroll_up_16bits, moving_scroll_down_16bits,
     moving_scroll_columns_16bits, moving_scroll_rows_16bits},
    {4, setting_scroll_32bits,
     draw_scroll_simple_32bits, draw_scroll_parallax_32bits,
     draw_scroll_layer_plane1_32bits, draw_scroll_layer_plane2_32bits,
     moving_scroll_left_32bits, moving_scroll_right_32bits, moving_scroll_up_32bits, moving_scroll_down_32bits,
     moving_scroll_columns_32bits, moving_scroll_rows_32bits},
    // Anything else counts as 8 bits.
    {1, setting_scroll_8bits,
     draw_scroll_simple_8bits, draw_scroll_parallax_8bits,
     draw_scroll_layer_plane1_8bits, draw_scroll_layer_plane2_8bits,
     moving_scroll_left_8bits, moving_scroll_right_8bits, moving_scroll_up_8bits, moving_scroll_down_8bits,
     moving_scroll_columns_8bits, moving_scroll_rows_8bits},
};
// clang-format on

}  // namespace

void set_scroll2D_drawing_routines() {
    const RoutineRow* row = routine_rows;
    while (row->pixel_bytes != screen_pixel_bytes()) ++row;
    routine_pixel_bytes = row->pixel_bytes;
    setting_scroll = row->setting;
    draw_scroll_simple = row->simple;
    draw_scroll_parallax = row->parallax;
    draw_scroll_layer_plane1 = row->layer_plane1;
    draw_scroll_layer_plane2 = row->layer_plane2;
    moving_scroll_left = row->left;
    moving_scroll_right = row->right;
    moving_scroll_up = row->up;
    moving_scroll_down = row->down;
    moving_scroll_columns = row->columns;
    moving_scroll_rows = row->rows;
}

}  // namespace scroll2d
