// The routines that touch pixels. Each is there once for every colour depth of the screen, as NAME_8bits,
// NAME_16bits and NAME_32bits; everything else in the module calls it through the pointer NAME, so that no
// other code knows a depth. routine_table.cpp chooses. Null until the init hook has chosen a depth.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace scroll2d {

// Fills plane 1 or 2 of the current scroll for a position and tells the script nothing: set_scroll() does
// both.
using FillRoutine = void(std::int32_t plane, std::int32_t x, std::int32_t y);

// Moves a plane's picture by a number of columns or rows, 1 or more, and leaves what as many single steps
// leave; (x, y) is the position that the buffer shows before.
using MoveRoutine = void(std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t steps);

// Draw planes of the current scroll, whose buffers hold the view and whose view lies inside dest_map; they
// write destination pixels inside the view only. A layer routine is the draw routine of blit entries too: it
// does not read the entry, and its result is 1.
using DrawRoutine = void();
using LayerRoutine = std::int32_t(__RVKBlit2D__*);

#define SCROLL2D_ROUTINES(EACH)                                                                           \
    EACH(FillRoutine, setting_scroll)     /* fill.cpp */                                                  \
    EACH(MoveRoutine, moving_scroll_left) /* shift.cpp */                                                 \
    EACH(MoveRoutine, moving_scroll_right)                                                                \
    EACH(MoveRoutine, moving_scroll_up)                                                                   \
    EACH(MoveRoutine, moving_scroll_down)                                                                 \
    EACH(DrawRoutine, draw_scroll_simple)        /* plane_single.cpp: plane 1 alone, covering its view */ \
    EACH(DrawRoutine, draw_scroll_parallax)      /* plane_parallax.cpp: both, the front plane keyed */    \
    EACH(LayerRoutine, draw_scroll_layer_plane1) /* plane_layer.cpp: plane 1 alone, keyed */              \
    EACH(LayerRoutine, draw_scroll_layer_plane2) /* plane 2 alone, keyed by mode */

#define SCROLL2D_DECLARE(Type, name) \
    extern Type* name;               \
    Type name##_8bits;               \
    Type name##_16bits;              \
    Type name##_32bits;
SCROLL2D_ROUTINES(SCROLL2D_DECLARE)
#undef SCROLL2D_DECLARE

// Defines the three routines of a name. The body, what follows the parameters, calls the depth Pixel.
#define SCROLL2D_EACH_DEPTH(Result, name, parameters, ...) \
    Result name##_8bits parameters {                       \
        using Pixel = std::uint8_t;                        \
        __VA_ARGS__                                        \
    }                                                      \
    Result name##_16bits parameters {                      \
        using Pixel = std::uint16_t;                       \
        __VA_ARGS__                                        \
    }                                                      \
    Result name##_32bits parameters {                      \
        using Pixel = std::uint32_t;                       \
        __VA_ARGS__                                        \
    }

// Bytes per pixel of the chosen routines: 1, 2 or 4.
extern std::int32_t routine_pixel_bytes;

// Chooses the routines for the screen's depth: 16, 32, or 8 for any other value.
void set_scroll2D_drawing_routines();

}  // namespace scroll2d
