#include "player/game/matched_maps.h"

#include <algorithm>
#include <cstddef>

namespace player {
namespace {

std::array<std::uint8_t, 256> match_colours(const Picture& picture, const host::Palette& palette) {
    std::array<std::uint8_t, 256> translation{};
    for (std::size_t i = 1; i < translation.size(); ++i) {
        Rgba wanted = picture.palette[i];
        const bool transparent = wanted.a < 128;
        wanted.a = 255;
        const auto same = static_cast<std::uint8_t>(i);
        const Rgba own = palette[same];
        const bool equal = own.r == wanted.r && own.g == wanted.g && own.b == wanted.b;
        translation[i] = transparent ? 0 : equal ? same : palette.nearest(wanted);
    }
    return translation;
}

}  // namespace

std::vector<std::uint8_t> match(const Picture& picture, const host::Palette& palette) {
    std::vector<std::uint8_t> result(picture.pixels.size());
    if (picture.indexed()) {
        const auto translation = match_colours(picture, palette);
        std::transform(picture.indices.begin(), picture.indices.end(), result.begin(),
                       [&](std::uint8_t index) { return translation[index]; });
    } else {
        std::transform(picture.pixels.begin(), picture.pixels.end(), result.begin(), [&](const Rgba& colour) {
            return static_cast<std::uint8_t>(host::to_pixel(colour, 8, palette, false));
        });
    }
    return result;
}

void MatchedMaps::keep(int file, int graph, Picture picture, const host::Palette& palette) {
    auto indices = match(picture, palette);
    maps_.insert_or_assign({file, graph}, Source{std::move(picture), std::move(indices)});
}

bool MatchedMaps::match_anew(host::Files& files, const host::Palette& palette) {
    for (auto& [place, source] : maps_) {
        host::Map* map = files.find_map(place.first, place.second);
        if (map == nullptr) continue;
        auto indices = match(source.picture, palette);
        const auto pixels = map->bytes();
        for (std::size_t i = 0; i < indices.size(); ++i)
            if (pixels[i] == std::byte{source.indices[i]}) pixels[i] = std::byte{indices[i]};
        source.indices = std::move(indices);
    }
    return !maps_.empty();
}

}  // namespace player
