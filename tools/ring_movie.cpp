// Drives the real buffer of a plane through a short story and writes what its memory holds after each step,
// one JSON object a line. tools/ring_movie.py draws the pictures.
//
// The map's pixels are numbers that say which map pixel they are, so that the drawing can tell every cell of
// the memory by its origin. The view is read by the reader that draws scrolls; a view that is not the map's
// cut at its position ends the story with exit status 1.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "module/buffer/buffer.h"
#include "module/contract/host_records.h"
#include "module/contract/numbers.h"
#include "module/render/plane_drawing.h"
#include "module/state/host_lookups.h"
#include "module/state/plane.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace {

using namespace scroll2d;

constexpr std::int32_t map_width = 64;
constexpr std::int32_t map_height = 30;
constexpr std::int32_t view_width = 24;
constexpr std::int32_t view_height = 12;
constexpr std::uint32_t never_written = 0xffffffff;

// `times` moves by (dx, dy), a frame each. `still` names the picture of the last one, if it is wanted.
struct Chapter {
    std::int32_t dx, dy, times;
    const char* caption;
    const char* still;
};

constexpr Chapter story[] = {
    {0, 0, 1, "A fill lays the view out from the first cell of the memory on.", "fill"},
    {1, 0, 1, "One step right: the read pointer goes one cell on, one column is copied.", "right"},
    {1, 0, 7, "Nothing else moves. The last row now runs past the ring's end, into the extra row.",
     "straddle"},
    {0, 1, 3, "A step down: one row on, one row is copied over the one that left.", "down"},
    {-1, 0, 7, "Left again: the pointer goes back, the left column is copied.", nullptr},
    {-1, 0, 1, "At the first cell of a ring row, the straddling is over.", "boundary"},
    {-1, 0, 1, "One further left: ring row 0 is first copied to the extra row.", "left"},
    {-1, 0, 6, "Rows begin at another column, and still no row is split.", nullptr},
    {0, -1, 3, "Steps up.", nullptr},
    {0, -1, 2, "Above the first ring row the pointer wraps to the last one.", "up"},
    {9, 0, 1, "Nine columns at once go as two strips, cut where a ring row begins.", "strips"},
    {1, 1, 6, "Diagonals: columns first, then rows.", "diagonal"},
    {-3, 0, 8, "The map repeats: its left edge follows its right one.", "repeat"},
    {16, -4, 1, "More than half the view: a fill is cheaper.", "refill"},
};

bool view_is_right() {
    const ConstPlane plane(*pscroll, 1);
    const PlaneRows<std::uint32_t> rows(*pscroll, plane);
    for (std::int32_t row = 0; row < view_height; ++row) {
        for (std::int32_t column = 0; column < view_width; ++column) {
            const std::int32_t x = floor_mod(std::int64_t{plane.x()} + column, map_width);
            const std::int32_t y = floor_mod(std::int64_t{plane.y()} + row, map_height);
            if (rows[row][column] == static_cast<std::uint32_t>(y * map_width + x)) continue;
            std::fprintf(stderr, "view pixel (%d, %d) is wrong at (%d, %d)\n", column, row, plane.x(),
                         plane.y());
            return false;
        }
    }
    return true;
}

void print_cells(const char* name, const std::uint32_t* cells, std::int32_t count) {
    std::printf(",\"%s\":[", name);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t value = cells[i] == never_written ? -1 : std::int64_t{cells[i]};
        std::printf("%s%lld", i == 0 ? "" : ",", static_cast<long long>(value));
    }
    std::printf("]");
}

void print_frame(const Chapter& chapter, bool last) {
    const ConstPlane plane(*pscroll, 1);
    const auto* const memory = reinterpret_cast<const std::uint32_t*>(plane.buffer());
    const PlaneRows<std::uint32_t> rows(*pscroll, plane);
    std::printf(
        "{\"caption\":\"%s\",\"still\":\"%s\",\"dx\":%d,\"dy\":%d,\"x\":%d,\"y\":%d,\"rows_to_wrap\":%d",
        chapter.caption, last && chapter.still != nullptr ? chapter.still : "", chapter.dx, chapter.dy,
        plane.x(), plane.y(), plane.rows_to_wrap());
    std::printf(",\"row_begins\":[");
    for (std::int32_t row = 0; row < view_height; ++row) {
        std::printf("%s%d", row == 0 ? "" : ",", static_cast<int>(rows[row] - memory));
    }
    std::printf("]");
    print_cells("memory", memory, view_width * (view_height + 1));
    std::printf("}\n");
}

}  // namespace

int main() {
    VideoInfo video{};
    video.bits_per_pixel = 32;
    Graphics2DInterface graphics{};
    graphics.Video = &video;
    HostRuntime runtime{};
    runtime.Graphics = &graphics;
    rvkre = &runtime;
    set_scroll2D_drawing_routines();

    std::vector<std::uint32_t> map(map_width * map_height);
    for (std::size_t i = 0; i < map.size(); ++i) map[i] = static_cast<std::uint32_t>(i);

    ScrollScriptStruct element = script_defaults;
    runtime.GlobalData = reinterpret_cast<std::uint8_t*>(&element);
    select_scroll(0);
    ScrollRecord& r = *pscroll;
    r.planes = 1;
    r.width = view_width;
    r.height = view_height;
    r.flags = wrap_plane1_x;
    r.map1_width = map_width;
    r.map1_height = map_height;
    r.map1_pixels = reinterpret_cast<const std::uint8_t*>(map.data());
    if (renew_buffers(r, 1, 1) != 0) return 1;
    auto* const memory = reinterpret_cast<std::uint32_t*>(r.buffer1);
    for (std::int32_t i = 0; i < view_width * (view_height + 1); ++i) memory[i] = never_written;
    set_scroll(1, 10, 8);

    std::printf("{\"map_width\":%d,\"map_height\":%d,\"width\":%d,\"height\":%d}\n", map_width, map_height,
                view_width, view_height);
    for (const Chapter& chapter : story) {
        for (std::int32_t i = 1; i <= chapter.times; ++i) {
            if (chapter.dx != 0 || chapter.dy != 0) moving_scroll(1, chapter.dx, chapter.dy);
            if (!view_is_right()) return 1;
            print_frame(chapter, i == chapter.times);
        }
    }
    free_buffers(r);
    return 0;
}
