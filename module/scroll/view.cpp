#include "module/scroll/view.h"

#include <algorithm>
#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/contract/numbers.h"
#include "module/state/routine_pointers.h"

namespace scroll2d {
namespace {

constexpr char module_name[] = "RVK_mod_scroll2D";

// One extent of cut_to: first no larger than the destination, then not past its far edge.
std::int64_t cut_extent(std::int64_t from, std::int64_t extent, std::int64_t destination_extent) {
    return std::min(std::min(extent, destination_extent), destination_extent - from);
}

// Tells the script once of each size that finds no memory, and not again at every frame.
void report_shortage(ScrollRecord& r, std::int32_t failed_plane) {
    const std::int32_t bytes = buffer_size(r).bytes;
    if (r.shortage_reported != 0 && r.shortage_bytes == bytes) return;
    r.shortage_reported = 1;
    r.shortage_bytes = bytes;
    rvkre->RaiseError(error_no_memory, module_name, 0, 0, failed_plane == 1 ? bytes : 0);
}

MapState look_up_plane_map(ScrollRecord& r, std::int32_t number) {
    const Plane plane = plane_of(r, number);
    plane.entry = rvkre->Graphics->GetMap(r.file, plane.graph);
    if (r.active == 0) return MapState::stopped;
    const MapRecord* const bitmap = usable_bitmap(plane.entry);
    if (bitmap == nullptr) return MapState::gone;
    if (bitmap->width < plane.map_width || bitmap->height < plane.map_height) return MapState::too_small;
    take_pixels(plane, *bitmap);
    return MapState::ready;
}

bool renew_view(ScrollRecord& r) {
    const std::int32_t failed_plane = renew_buffers(r);
    if (failed_plane != 0) {
        report_shortage(r, failed_plane);
        return false;
    }
    set_scroll(1, r.plane1_x, r.plane1_y);
    if (r.planes == 2) set_scroll(2, r.plane2_x, r.plane2_y);
    return true;
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
        pfpgmap_scroll2D = rvkre->Graphics->GetMap(r.dest_file, r.dest_graph);
        MapRecord* const bitmap = usable_bitmap(pfpgmap_scroll2D);
        if (bitmap != nullptr) r.dest_map = bitmap;
        return bitmap;
    }
    return usable_bitmap(r.dest_map);
}

MapState look_up_plane_maps(ScrollRecord& r) {
    MapState worst = MapState::ready;
    for (std::int32_t number = 1; number <= r.planes && worst < MapState::stopped; ++number) {
        worst = std::max(worst, look_up_plane_map(r, number));
    }
    return worst;
}

std::int32_t make_buffers_fit(ScrollRecord& r) {
    if (buffers_fit(r) || stored_view(r).empty()) return 0;
    const std::int32_t failed_plane = renew_buffers(r);
    if (failed_plane != 0) return failed_plane;
    setting_scroll(1, r.plane1_x, r.plane1_y);
    if (r.planes == 2) setting_scroll(2, r.plane2_x, r.plane2_y);
    return 0;
}

bool bring_view_up_to_date() {
    ScrollRecord& r = *pscroll;
    const __RVKRegion__* const region = region_at(r.region);
    if (r.active == 0 || (region == nullptr && r.region != -1)) return false;

    const std::int32_t failed_plane = make_buffers_fit(r);
    if (failed_plane != 0) {
        report_shortage(r, failed_plane);
        return false;
    }

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
    if (renew_view(r)) return true;
    store_view(r, old);
    return false;
}

bool fit_to_draw(const ScrollRecord& r) {
    return r.active != 0 && buffers_fit(r) && stored_view(r).inside(*r.dest_map);
}

}  // namespace scroll2d
