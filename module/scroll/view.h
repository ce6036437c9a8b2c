// The view of a scroll: where it lies on the destination, and whether the scroll is fit to be moved and
// drawn.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"
#include "module/state/plane.h"
#include "module/state/scroll_record.h"

namespace scroll2d {

// A rectangle on a destination, in pixels. Kept in 64 bits until it is stored, since the edges of a region
// may hold any 32-bit value; empty when an extent is below 1.
struct View {
    std::int64_t x;
    std::int64_t y;
    std::int64_t width;
    std::int64_t height;

    bool empty() const { return width < 1 || height < 1; }
    bool same_size(const View& other) const { return width == other.width && height == other.height; }
    bool inside(const MapRecord& destination) const {
        return x + width <= destination.width && y + height <= destination.height;
    }
};

// The view that a region asks for: its negative edges are taken as 0, its far edges stand as they are. No
// region (null) asks for the whole destination.
View view_of(const __RVKRegion__* region, const MapRecord& destination);

// The part of a view that lies on the destination; may be empty.
View cut_to(const View& view, const MapRecord& destination);

// What to add to a world position to get a destination position: the world point (plane1_x, plane1_y) is
// shown at (dest_x, dest_y).
inline std::int64_t to_destination_x(const ScrollRecord& r) {
    return std::int64_t{r.dest_x} - r.plane1_x;
}
inline std::int64_t to_destination_y(const ScrollRecord& r) {
    return std::int64_t{r.dest_y} - r.plane1_y;
}

View stored_view(const ScrollRecord& r);
void store_view(ScrollRecord& r, const View& view);

// The bitmap that a scroll draws into as the host has it now, or null: a destination map is looked up again.
//   writes: dest_map; pfpgmap_scroll2D for a map
MapRecord* look_up_destination(ScrollRecord& r);

// Takes a map into a plane's record, as a start and a refresh do: size, pixels and alpha flag.
void take_map(const Plane& plane, const MapRecord& map);

// The bitmap of a plane's map, or null where none may be used.   writes: pfpgmap1_scroll2D or
// pfpgmap2_scroll2D
MapRecord* look_up_map_of_plane(const ScrollRecord& r, std::int32_t number);

// What a look-up of a running scroll's maps found. The order is that of severity.
enum class MapState {
    ready,
    too_small,  // there, but smaller than the size on record: nothing could be read from it safely
    stopped,    // the host has stopped the scroll meanwhile
    gone,
};

// Brings the maps of all the scroll's planes into the record: pixels and alpha flags; the sizes stay those of
// the start or the last refresh. The worst that was found; the last two end the look-up.
//   writes: pfpgmap1_scroll2D, pfpgmap2_scroll2D, the planes' map fields
MapState look_up_plane_maps(ScrollRecord& r);

// Brings the view of the current scroll up to its region and its destination as they are now, with new
// buffers when the size has changed or the view has left the destination. False when there is nothing to draw
// this time: the view is empty, or the host has taken its region away or stopped the scroll. A failed
// allocation is reported as error 100, once for a size until there is memory again; the scroll then keeps its
// old view and buffers.
//   reads: pscroll, _scroll_
bool bring_view_up_to_date();

// Whether a scroll may be drawn right now: running, buffers for its view, view on its destination.
bool fit_to_draw(const ScrollRecord& r);

}  // namespace scroll2d
