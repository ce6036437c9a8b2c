// The way to the host, and what it has at this moment: depth, maps, regions, limits. Looked up at every use
// and never kept, since the host may take anything away between two calls.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"
#include "module/state/routine_pointers.h"

// The way to the host; set at the end of registration.
extern "C" [[gnu::visibility("default")]] HostRuntime* rvkre;

namespace scroll2d {

extern ScrollSystemInterface scrollSystem;  // the services for the graphics module
extern void* scroll2D_blitlist;             // the module's own list, "SCROLL2D"

// What was last looked up. Whoever looks something up gets it as the result, and reads it nowhere else.
extern FileRecord* pfpg_scroll2D;
extern MapEntry* pfpgmap1_scroll2D;  // plane 1
extern MapEntry* pfpgmap2_scroll2D;  // plane 2
extern MapEntry* pfpgmap_scroll2D;   // another map: destination, process graphic
extern __RVKRegion__* pregion_scroll2D;
extern std::int32_t max_graph_scroll2D;  // graph numbers of the last file are below it

// The limits of the present sprite pass: file and region numbers are below them.
extern std::int32_t max_fpg_scroll2D;
extern std::int32_t max_region_scroll2D;

// Bytes per pixel of the screen: 2 at 16 bits, 4 at 32 bits, 1 at any other depth.
inline std::int32_t screen_pixel_bytes() {
    switch (rvkre->Graphics->Video->bits_per_pixel) {
        case 16:
            return 2;
        case 32:
            return 4;
        default:
            return 1;
    }
}

// A bitmap that may be read or drawn into, or null: it is there, has pixels, and these have the depth of the
// chosen routines (a host that has changed the depth and not yet called the update hook has no such bitmap).
inline MapRecord* usable_bitmap(MapRecord* bitmap) {
    if (bitmap == nullptr || bitmap->pixels == nullptr || bitmap->width < 1 || bitmap->height < 1)
        return nullptr;
    return screen_pixel_bytes() == routine_pixel_bytes ? bitmap : nullptr;
}
inline MapRecord* usable_bitmap(const MapEntry* entry) {
    return entry == nullptr ? nullptr : usable_bitmap(entry->bitmap);
}

// Graph numbers of a file are below it.
inline std::int32_t graph_limit(std::int32_t file) {
    return file == 0 ? rvkre->Graphics->SystemGraphCount() : 1000;
}

// An entry of the host's region table, or null: no number at or beyond RegionCount() is a region, whatever
// was valid when a script or a record stored it.   writes: pregion_scroll2D
inline const __RVKRegion__* region_at(std::int32_t number) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (number < 0 || number >= g.RegionCount()) return nullptr;
    return pregion_scroll2D = g.Regions + number;
}

// Looks a map up: its bitmap, or null where none may be used.   writes: entry, one of the globals above
inline MapRecord* look_up_map(MapEntry*& entry, std::int32_t file, std::int32_t graph) {
    entry = rvkre->Graphics->GetMap(file, graph);
    return usable_bitmap(entry);
}

}  // namespace scroll2d
