#include "bench/peer.h"

namespace bench {

std::uint32_t over_black_pixel(std::uint32_t pixel) {
    const std::uint32_t a = pixel >> 24;
    if (a == 255) return pixel;
    if (a == 0) return 0;
    std::uint32_t result = 0;
    for (int shift = 0; shift < 24; shift += 8) result |= (((pixel >> shift & 255) + 1) * a >> 8) << shift;
    return result;
}

}  // namespace bench
