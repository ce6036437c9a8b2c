#include "bench/pictures.h"
#include "player/common/picture.h"

namespace bench {
namespace {

// As many pixels of a picture of the demos as there is room for, repeated where there is more. It stands on
// its foot: in most of them that is where the land is.
host::Image fitted(const char* name, Size size) {
    const player::Picture art = player::read_png(std::string(SCROLL2D_DEMOS "/art/") + name);
    host::Image image{size.width, size.height, {}};
    image.pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (std::int32_t above = size.height - 1; above >= 0; --above)
        for (std::int32_t x = 0; x < size.width; ++x)
            image.pixels.push_back(art.at(x % art.width, art.height - 1 - above % art.height));
    return image;
}

}  // namespace

Pictures paint_art(Size size) {
    return {fitted("dusk_back.png", size), fitted("depth5.png", size), fitted("dusk_front.png", size)};
}

}  // namespace bench
