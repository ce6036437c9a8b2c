// What the module knows of one scroll.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace scroll2d {

// The internal state of one scroll. Both planes share one view, the rectangle of width x height pixels at
// (dest_x, dest_y) on dest_map. How a plane's buffer is read is told in module/buffer/buffer.h.
struct ScrollRecord {
    std::uint8_t active;           // 1 while the scroll runs
    std::int32_t planes;           // 1, or 2 when a background plane is drawn behind plane 1
    std::int32_t file;             // file of both maps
    std::int32_t graph1;           // map code of plane 1
    std::int32_t graph2;           // map code of plane 2, 0 when there is none
    std::int32_t alpha;            // opacity, 0-255
    std::int32_t flags;            // wrap bits; other bits are kept and ignored
    std::int32_t region;           // host region that gives the view; -1: all of dest_map
    std::int32_t mode;             // drawing mode, 0-3
    std::int32_t width;            // view, pixels. May be 0 or less while a script's region is empty:
    std::int32_t height;           //   nothing uses it as a size before buffers_fit() has said so
    std::int32_t pitch;            // bytes per buffer row
    std::int32_t dest_x;           // left of the view, destination pixels, 0 or more
    std::int32_t dest_y;           // top of the view, likewise
    std::int32_t ring_size;        // width x height, pixels
    std::int32_t last_row_offset;  // (height - 1) x width, pixels
    std::int32_t last_row_bytes;   // (height - 1) x pitch, bytes
    std::int32_t rows_to_wrap1;    // plane 1: view rows before the read pointer wraps, 1 to height
    std::int32_t rows_to_wrap2;
    std::uint8_t* buffer1;  // plane 1: (height + 1) x pitch bytes, owned
    std::uint8_t* start1;   // plane 1: address of view pixel (0,0) in the buffer
    std::uint8_t* buffer2;
    std::uint8_t* start2;
    std::int32_t plane1_x;  // map position shown at view pixel (0,0), pixels
    std::int32_t plane1_y;
    std::int32_t map1_width;  // the plane's map as it was at start or refresh, pixels
    std::int32_t map1_height;
    std::int32_t map1_alpha_flag;  // nonzero: byte 3 of each 32-bit pixel is its opacity
    std::int32_t plane2_x;
    std::int32_t plane2_y;
    std::int32_t map2_width;
    std::int32_t map2_height;
    std::int32_t map2_alpha_flag;
    const std::uint8_t* map1_pixels;  // borrowed; looked up again before every use
    const std::uint8_t* map2_pixels;
    std::int32_t dest_file;  // destination map; 0 and 0: the screen
    std::int32_t dest_graph;
    MapRecord* dest_map;  // looked up again before every use when it is not the screen

    // What the buffers were made and filled for. A view or a depth that differs finds no buffer in them.
    std::int32_t made_width;
    std::int32_t made_height;
    std::int32_t made_pixel_bytes;

    // A shortage of memory at a draw of which the script has been told.
    std::uint8_t shortage_reported;
    std::int32_t shortage_bytes;  // what a plane's buffer wanted
};

}  // namespace scroll2d
