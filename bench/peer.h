// Peers: general 2-D libraries that draw the picture of a scroll from its whole maps, as a game without the
// module would. What they need besides the maps is prepared beforehand and not timed.
#pragma once

#include <algorithm>
#include <memory>

#include "bench/stage.h"
#include "module/contract/numbers.h"

namespace bench {

class Peer {
  public:
    virtual ~Peer() = default;
    virtual void draw(Position front, Position back) = 0;
};

// Software surfaces: colour key, blend mode and alpha modulation, alpha as straight values.
// `run_length` lets the library encode keyed and blended surfaces as runs beforehand.
[[nodiscard]] std::unique_ptr<Peer> make_sdl_peer(Stage& stage, const Variant& variant, bool run_length);

// Composition operators on premultiplied alpha. It has no colour key: keyed maps get an alpha channel of 0
// and 255 beforehand, palette indices a mask.
[[nodiscard]] std::unique_ptr<Peer> make_pixman_peer(Stage& stage, const Variant& variant);

// The most that a colour field of a peer's picture may differ. They divide by 255 or take five bits of
// alpha where the module divides by 256, once for each blended plane.
inline constexpr std::int32_t peer_tolerance = 4;

// How a plane of a variant is laid over what is there.
struct Layer {
    bool keyed;        // transparent pixels leave the destination
    bool pixel_alpha;  // byte 3 of a pixel is its alpha
    std::int32_t alpha;
};
[[nodiscard]] constexpr Layer back_layer(const Variant& v) {
    return {v.keyed(), v.back_alpha, 255};
}
[[nodiscard]] constexpr Layer front_layer(const Variant& v, std::int32_t bits_per_pixel) {
    return {v.planes == 2 || v.mode != 0, v.front_alpha, bits_per_pixel == 8 ? 255 : v.alpha};
}
// Per-pixel alpha over nothing: the plane covers its view as it is over black, which can be prepared.
[[nodiscard]] constexpr bool over_black(const Layer& layer) {
    return layer.pixel_alpha && !layer.keyed && layer.alpha == 255;
}

// A map's 32-bit pixel laid over black, as the module does it.
[[nodiscard]] std::uint32_t over_black_pixel(std::uint32_t pixel);

// Covers the view with a map that repeats: calls blit(map x, map y, width, height, view x, view y) for each
// part that lies within one copy of the map.
template <class Blit>
void cover(Size view, Size map, Position at, Blit blit) {
    std::int32_t map_y = scroll2d::floor_mod(at.y, map.height);
    for (std::int32_t y = 0; y < view.height;) {
        const std::int32_t height = std::min(view.height - y, map.height - map_y);
        std::int32_t map_x = scroll2d::floor_mod(at.x, map.width);
        for (std::int32_t x = 0; x < view.width;) {
            const std::int32_t width = std::min(view.width - x, map.width - map_x);
            blit(map_x, map_y, width, height, x, y);
            x += width;
            map_x = 0;
        }
        y += height;
        map_y = 0;
    }
}

}  // namespace bench
