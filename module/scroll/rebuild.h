// New buffers for a scroll's view, filled at the planes' positions.
#pragma once

#include <cstdint>

namespace scroll2d {

// clang-format off
// Who rebuilds, and how:
//
//   who                             planes       maps          script's positions   when there is no memory
//   scroll_start                    one by one   just chosen   mirrored             an error of its own
//   scroll_set_destination          all          looked up     mirrored             an error of its own
//   a draw, the view has changed    all          known         mirrored             reported
//   a draw, the depth has changed   all          known         left alone           reported
//   scroll_move, likewise           all          known         left alone           the next draw reports it
//   scroll_refresh, likewise        all          known         mirrored             the next draw reports it
//
// Positions are left alone so that what a script wrote there is not lost before the move that obeys it.
// clang-format on
struct Rebuild {
    std::int32_t only_plane = 0;  // 0: all planes of the scroll, all or none
    bool looks_up_maps = false;   // where one cannot be used, the buffers wait empty for a draw that finds it
    bool mirrors = false;         // copies the positions into the script element
    bool reports = false;         // error 100, once for a size until there is memory again
};

// Rebuilds the current scroll for the view and the depth on record; an empty view needs nothing. False when
// there is no memory: the old buffers are kept.   reads: pscroll, _scroll_
bool rebuild(const Rebuild& how);

}  // namespace scroll2d
