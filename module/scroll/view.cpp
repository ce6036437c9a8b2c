#include "module/scroll/view.h"

#include <algorithm>
#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/contract/numbers.h"
#include "module/scroll/rebuild.h"
#include "module/state/host_lookups.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// One extent of cut_to: first no larger than the destination, then not past its far edge.
std::int64_t cut_extent(std::int64_t from, std::int64_t extent, std::int64_t destination_extent) {
    return std::min(std::min(extent, destination_extent), destination_extent - from);
}

void take_pixels(const Plane& plane, const MapRecord& map) {
    plane.map_pixels() = static_cast<const std::uint8_t*>(map.pixels);
    plane.map_alpha_flag() = map.alpha_flag;
}

MapState look_up_plane_map(ScrollRecord& r, std::int32_t number) {
    const Plane plane(r, number);
    const MapRecord* const bitmap = look_up_map_of_plane(r, number);
    if (r.active == 0) return MapState::stopped;
    if (bitmap == nullptr) return MapState::gone;
    if (bitmap->width < plane.map_width() || bitmap->height < plane.map_height()) return MapState::too_small;
    take_pixels(plane, *bitmap);
    return MapState::ready;
}

}  // namespace

View view_of(const __RVKRegion__* region, const MapRecord& destination) {
    if (region == nullptr) return {0, 0, destination.width, destination.height};
    const std::int64_t x = std::max<std::int64_t>(region->x, 0);
    const std::int64_t y = std::max<std::int64_t>(region->y, 0);
    return {x, y, region->x2 - x + 1, region->y2 - y + 1};
}

View cut_to(const View& view, const MapRecord& destination) {
    return {view.x, view.y, cut_extent(view.x, view.width, destination.width),
            cut_extent(view.y, view.height, destination.height)};
}

View stored_view(const ScrollRecord& r) {
    return {r.dest_x, r.dest_y, r.width, r.height};
}

void store_view(ScrollRecord& r, const View& view) {
    r.dest_x = saturate32(view.x);
    r.dest_y = saturate32(view.y);
    r.width = saturate32(view.width);
    r.height = saturate32(view.height);
}

MapRecord* look_up_destination(ScrollRecord& r) {
    if (r.dest_file >= 0 && r.dest_graph != 0) {
        MapRecord* const bitmap = look_up_map(pfpgmap_scroll2D, r.dest_file, r.dest_graph);
        if (bitmap != nullptr) r.dest_map = bitmap;
        return bitmap;
    }
    return usable_bitmap(r.dest_map);
}

void take_map(const Plane& plane, const MapRecord& map) {
    plane.map_width() = map.width;
    plane.map_height() = map.height;
    take_pixels(plane, map);
}

MapRecord* look_up_map_of_plane(const ScrollRecord& r, std::int32_t number) {
    return look_up_map(number == 1 ? pfpgmap1_scroll2D : pfpgmap2_scroll2D, r.file,
                       ConstPlane(r, number).graph());
}

MapState look_up_plane_maps(ScrollRecord& r) {
    MapState worst = MapState::ready;
    for (std::int32_t number = 1; number <= r.planes && worst < MapState::stopped; ++number) {
        worst = std::max(worst, look_up_plane_map(r, number));
    }
    return worst;
}

bool bring_view_up_to_date() {
    ScrollRecord& r = *pscroll;
    const __RVKRegion__* const region = region_at(r.region);
    if (r.active == 0 || (region == nullptr && r.region != -1)) return false;
    if (!buffers_fit(r) && !rebuild({.reports = true})) return false;

    const View old = stored_view(r);
    const View asked = view_of(region, *r.dest_map);
    store_view(r, asked);
    if (asked.empty()) return false;
    if (asked.same_size(old) && asked.inside(*r.dest_map)) {
        r.shortage_reported = 0;
        return true;
    }

    store_view(r, cut_to(asked, *r.dest_map));
    if (stored_view(r).empty()) return false;
    if (rebuild({.mirrors = true, .reports = true})) return true;
    store_view(r, old);
    return false;
}

bool fit_to_draw(const ScrollRecord& r) {
    return r.active != 0 && buffers_fit(r) && stored_view(r).inside(*r.dest_map);
}

}  // namespace scroll2d
