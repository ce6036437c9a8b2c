// The off-screen buffer of a plane: exactly the part of its map that the view shows, in the screen's pixel
// format. A fill makes it anew; a shift moves it by copying only what comes into view. It draws nothing and
// knows no transparent pixel.
//
//                 start (read pointer, any pixel of the ring)
//                   v
//   +---------------+--------------------+
//   | view rows     | view rows          |  The first `height` rows are one linear ring of
//   | rows_to_wrap  | 0 to               |  width x height pixels: the view begins at `start` and goes on
//   | and on        | rows_to_wrap - 1   |  row by row, from the ring's end to its beginning.
//   +--+------------+--------------------+
//   |s |            the extra row        |  Where `start` lies at column s of a ring row, one view row
//   +--+---------------------------------+  straddles the ring's end. The extra row continues it: its first
//                                           s pixels are read, and ring row 0's first s pixels are stale.
//
//   View row r begins at  start + r x width               while r < rows_to_wrap,
//                         start + r x width - ring_size   from then on,
//   and its `width` pixels are contiguous.  1 <= rows_to_wrap <= height.
//
//   Invariant, after every fill and shift: view pixel (column c, row r) holds the map pixel
//   (floor_mod(x + c, map width), floor_mod(y + r, map height)), (x, y) being the plane's position. A map
//   pixel that changed since it was copied reaches the buffer at the next fill.
#pragma once

#include <cstdint>

#include "module/state/scroll_record.h"

namespace scroll2d {

// ---- plane_buffers.cpp

// Whether a scroll's buffers were made and filled for the view and the depth as they are now. While not,
// nothing may be read from them or written into them.
bool buffers_fit(const ScrollRecord& r);

// The size of a plane's buffer for the view on record.
struct BufferSize {
    std::int32_t bytes;  // (height + 1) x pitch; its low 32 bits when it does not fit
    bool fits;           // in 31 bits; otherwise it cannot be allocated
};

BufferSize buffer_size(const ScrollRecord& r);

// Gives planes first to last of the scroll new buffers for the view on record and frees the old ones: all or
// none. The record then says whose buffers they are: it stores what buffers_fit() asks about, and ring_size,
// pitch, last_row_offset and last_row_bytes with it, so that these always describe the buffers. A shortage of
// memory is over then. The new buffers hold nothing yet; the caller fills them at once, or calls
// disown_buffers. Returns 0, or the number of the plane whose allocation failed; then nothing has changed.
std::int32_t renew_buffers(ScrollRecord& r, std::int32_t first, std::int32_t last);

// Says that the buffers hold nothing for any view, so that the next draw or move makes new ones.
void disown_buffers(ScrollRecord& r);

// Frees what buffers there are; the record then has none.
void free_buffers(ScrollRecord& r);

// ---- fill.cpp

// Fills plane 1 or 2 of the current scroll for position (x, y), clamped on axes that do not wrap, and copies
// all four plane coordinates into the script element. Fills nothing while the view has no buffers.
//   reads: pscroll, _scroll_     writes: the plane's buffer, read pointer and position; x0, y0, x1, y1
void set_scroll(std::int32_t plane, std::int32_t x, std::int32_t y);

// ---- shift.cpp

// Moves plane 1 or 2 of the current scroll by (dx, dy) map pixels: clamped as a fill does, shifted up to half
// the view, filled anew beyond. Copies the plane's position into the script element. Does nothing while the
// view has no buffers.
//   reads: pscroll, _scroll_     writes: as set_scroll, but a shift mirrors its own plane only
void moving_scroll(std::int32_t plane, std::int64_t dx, std::int64_t dy);

}  // namespace scroll2d
