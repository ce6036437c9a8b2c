// The ten scrolls: their records, their script elements, and the globals by which routines address the
// current scroll. This is the one place where the module keeps state; scroll_table.cpp owns all of it.
//
// Selecting scroll n means scroll_num = n, pscroll = its record and _scroll_ = its script element, computed
// afresh from the host's data, since the host may move its global data between two calls. The module runs on
// the host's one thread. No routine is re-entrant, but a host may stop scrolls from any of its slots.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"
#include "module/contract/script_numbers.h"

// The way to the host; set at the end of registration.
extern "C" [[gnu::visibility("default")]] HostRuntime* rvkre;

namespace scroll2d {

// Error codes. Their texts belong to the host.
constexpr std::int32_t error_no_memory = 100;
constexpr std::int32_t error_scroll_number = 107;
constexpr std::int32_t error_region = 108;
constexpr std::int32_t error_file = 109;
constexpr std::int32_t error_graph = 110;
constexpr std::int32_t error_empty_file = 111;
constexpr std::int32_t error_no_map = 112;
constexpr std::int32_t error_destination_scroll_number = 131;
constexpr std::int32_t error_empty_view = 146;

// The result of a script call that failed: 0x80000000.
constexpr std::int32_t failure = INT32_MIN;

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

// One element of the script global scroll[10], laid out by the declaration text of the registration.
struct ScrollScriptStruct {
    std::int32_t camera;   // id of the process to follow; 0: go where x0, y0, x1, y1 say
    std::int32_t ratio;    // plane 2 moves by plane 1's movement x 100 / ratio; 0: not at all
    std::int32_t file;     // mirror of the record; scroll_refresh takes a changed value
    std::int32_t graph1;   // likewise, when positive
    std::int32_t graph2;   // likewise
    std::int32_t region1;  // inner follow region of the camera; outside 0-65536: none
    std::int32_t region2;  // outer follow region; likewise
    std::int32_t speed;    // > 0: pixels per move and axis while the camera is inside region2
    std::int32_t x0, y0;   // position of plane 1: the target without a camera, written back
    std::int32_t x1, y1;   // position of plane 2
    std::int32_t z;        // depth of the scroll
    std::int32_t alpha;    // opacity; clamped to 0-255 at every move
    std::int32_t visible;  // drawn while > 0
};
static_assert(sizeof(ScrollScriptStruct) == 60, "fifteen fields, elements back to back");

// The defaults of the declaration, which stopping a scroll restores.
constexpr ScrollScriptStruct script_defaults = {.camera = 0,
                                                .ratio = 200,
                                                .file = 0,
                                                .graph1 = 0,
                                                .graph2 = 0,
                                                .region1 = -1,
                                                .region2 = -1,
                                                .speed = 0,
                                                .x0 = 0,
                                                .y0 = 0,
                                                .x1 = 0,
                                                .y1 = 0,
                                                .z = 512,
                                                .alpha = 255,
                                                .visible = 1};

extern ScrollRecord scroll_sys[scroll_count];

// The current scroll.
extern std::int32_t scroll_num;
extern ScrollRecord* pscroll;
extern ScrollScriptStruct* _scroll_;
extern std::int32_t _scroll_offset_;  // byte offset of scroll[0] in the host's global data

// What was last looked up at the host.
extern FileRecord* pfpg_scroll2D;
extern MapEntry* pfpgmap1_scroll2D;  // plane 1
extern MapEntry* pfpgmap2_scroll2D;  // plane 2
extern MapEntry* pfpgmap_scroll2D;   // another map: destination, process graphic
extern __RVKRegion__* pregion_scroll2D;
extern std::int32_t max_graph_scroll2D;  // graph numbers of the last file are below it
extern std::int32_t max_fpg_scroll2D;
extern std::int32_t max_region_scroll2D;

extern void* scroll2D_blitlist;             // the module's own list, "SCROLL2D"
extern ScrollSystemInterface scrollSystem;  // the services for the graphics module

constexpr bool is_scroll_number(std::int32_t number) {
    return static_cast<std::uint32_t>(number) < static_cast<std::uint32_t>(scroll_count);
}

// Whether a process with this scroll_mask is shown in a scroll: bit n stands for scroll n, 0 for every
// scroll.
constexpr bool mask_shows(std::int32_t mask, std::int32_t number) {
    return mask == 0 || (mask >> number & 1) != 0;
}

// In the layer modes plane 1 is drawn among the scroll's sprites.
constexpr bool is_layer_mode(std::int32_t mode) {
    return mode == scroll_layers || mode == scroll_layers_key;
}

// The scrolls that a script's number names: one, or all ten for all_scroll, in increasing order.
struct ScrollRange {
    std::int32_t first;
    std::int32_t last;
};
constexpr bool is_scroll_range(std::int32_t number) {
    return number == all_scroll || is_scroll_number(number);
}
constexpr ScrollRange scroll_range(std::int32_t number) {
    return number == all_scroll ? ScrollRange{0, scroll_count - 1} : ScrollRange{number, number};
}

// Makes a scroll the current one.   writes: scroll_num, pscroll, _scroll_
void select_scroll(std::int32_t number);

// Selects, when it goes, the scroll that was current before. An entry point that a host may call from one of
// its slots holds one, so that whatever called the slot goes on with its own scroll.
class SelectionKept {
  public:
    SelectionKept() = default;
    SelectionKept(const SelectionKept&) = delete;
    SelectionKept& operator=(const SelectionKept&) = delete;
    ~SelectionKept() { select_scroll(number_); }

  private:
    std::int32_t number_ = scroll_num;
};

// What belongs to one plane. The two planes differ by this data alone: every algorithm is written once, for
// "a plane".
struct Plane {
    std::int32_t& graph;
    std::int32_t& rows_to_wrap;
    std::uint8_t*& buffer;
    std::uint8_t*& start;
    std::int32_t& x;
    std::int32_t& y;
    std::int32_t& map_width;
    std::int32_t& map_height;
    std::int32_t& map_alpha_flag;
    const std::uint8_t*& map_pixels;
    MapEntry*& entry;
    std::int32_t wrap_x_bit;
    std::int32_t wrap_y_bit;
    std::int32_t& flags;

    bool wraps_x() const { return (flags & wrap_x_bit) != 0; }
    bool wraps_y() const { return (flags & wrap_y_bit) != 0; }
};

// Plane 1 for 1, plane 2 for any other number.
inline Plane plane_of(ScrollRecord& r, std::int32_t number) {
    if (number == 1) {
        return {r.graph1,          r.rows_to_wrap1, r.buffer1,         r.start1,
                r.plane1_x,        r.plane1_y,      r.map1_width,      r.map1_height,
                r.map1_alpha_flag, r.map1_pixels,   pfpgmap1_scroll2D, wrap_plane1_x,
                wrap_plane1_y,     r.flags};
    }
    return {r.graph2,          r.rows_to_wrap2, r.buffer2,         r.start2,
            r.plane2_x,        r.plane2_y,      r.map2_width,      r.map2_height,
            r.map2_alpha_flag, r.map2_pixels,   pfpgmap2_scroll2D, wrap_plane2_x,
            wrap_plane2_y,     r.flags};
}

// What belongs to one plane in a script element.
struct ScriptPlane {
    std::int32_t& graph;
    std::int32_t& x;
    std::int32_t& y;
};
inline ScriptPlane script_plane_of(ScrollScriptStruct& s, std::int32_t number) {
    if (number == 1) return {s.graph1, s.x0, s.y0};
    return {s.graph2, s.x1, s.y1};
}

}  // namespace scroll2d
