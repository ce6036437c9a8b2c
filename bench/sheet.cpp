#include "bench/parts.h"
#include "bench/pictures.h"
#include "player/common/picture.h"

namespace bench {
namespace {

constexpr Size tile{216, 136};
constexpr std::int32_t columns = 3;
constexpr std::int32_t gap = 6;

void lay_over(player::Picture& under, const host::Image& image) {
    for (std::size_t i = 0; i < under.pixels.size(); ++i) {
        const host::Rgba s = image.pixels[i];
        host::Rgba& d = under.pixels[i];
        const auto mix = [&](std::uint8_t from, std::uint8_t to) {
            return static_cast<std::uint8_t>((from * (255 - s.a) + to * s.a + 127) / 255);
        };
        d = {mix(d.r, s.r), mix(d.g, s.g), mix(d.b, s.b), 255};
    }
}

player::Picture drawn(const Kind& kind) {
    Pictures pictures = kind.paint(tile);
    player::Picture picture(std::move(pictures.cover));
    lay_over(picture, pictures.back);
    lay_over(picture, pictures.front);
    return picture;
}

}  // namespace

void write_sheet(const std::string& path) {
    const auto count = static_cast<std::int32_t>(kinds().size());
    const std::int32_t rows = (count + columns - 1) / columns;
    player::Picture sheet(columns * (tile.width + gap) - gap, rows * (tile.height + gap) - gap,
                          {255, 255, 255, 255});
    for (std::int32_t i = 0; i < count; ++i)
        player::paste(sheet, drawn(kinds()[static_cast<std::size_t>(i)]), i % columns * (tile.width + gap),
                      i / columns * (tile.height + gap));
    player::write_png(path, sheet);
}

}  // namespace bench
