#include <algorithm>

#include "player/output/contact_sheet.h"

namespace player {
namespace {

constexpr int margin = 6;           // pixels around and between shots
constexpr int widest_sheet = 1920;  // pixels
constexpr Rgba paper{40, 40, 46, 255};

// Each square of `times` by `times` pixels as its mean colour.
Picture shrunk(const Picture& source, int times) {
    Picture result(std::max(1, source.width / times), std::max(1, source.height / times));
    for (int y = 0; y < result.height; ++y)
        for (int x = 0; x < result.width; ++x) {
            int r = 0, g = 0, b = 0, n = 0;
            for (int sy = y * times; sy < std::min(source.height, (y + 1) * times); ++sy)
                for (int sx = x * times; sx < std::min(source.width, (x + 1) * times); ++sx, ++n) {
                    const Rgba& p = source.at(sx, sy);
                    r += p.r;
                    g += p.g;
                    b += p.b;
                }
            const auto mean = [n](int sum) { return static_cast<std::uint8_t>((sum + n / 2) / n); };
            result.at(x, y) = {mean(r), mean(g), mean(b), 255};
        }
    return result;
}

}  // namespace

Picture contact_sheet(const std::vector<Picture>& shots) {
    if (shots.empty()) return {};
    int width = 1, height = 1;
    for (const Picture& shot : shots) {
        width = std::max(width, shot.width);
        height = std::max(height, shot.height);
    }
    // As many columns as rows, or one more: shots are mostly wider than high.
    const int count = static_cast<int>(shots.size());
    int columns = 1;
    while (columns * columns < count) ++columns;
    const int rows = (count + columns - 1) / columns;
    const int times = std::max(1, (columns * width + widest_sheet - 1) / widest_sheet);
    const int cell_width = std::max(1, width / times) + margin,
              cell_height = std::max(1, height / times) + margin;

    Picture sheet(columns * cell_width + margin, rows * cell_height + margin, paper);
    for (int i = 0; i < count; ++i)
        paste(sheet, shrunk(shots[static_cast<std::size_t>(i)], times), margin + (i % columns) * cell_width,
              margin + (i / columns) * cell_height);
    return sheet;
}

bool is_contact_sheet(const Picture& picture) {
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const bool on_margin =
                std::min(x, picture.width - 1 - x) < margin || std::min(y, picture.height - 1 - y) < margin;
            if (on_margin && !(picture.at(x, y) == paper)) return false;
        }
    return true;
}

}  // namespace player
