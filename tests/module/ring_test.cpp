// Every shift from every place of a ring's read pointer, beside the model.
#include <doctest/doctest.h>

#include <cstdint>
#include <utility>

#include "tests/model/lockstep.h"

namespace {

using model::Field;
using model::Lockstep;

// From every pixel of the ring as the read pointer, every shift that is not yet a refill, and the way back.
void visit_ring(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel) {
    Lockstep game({.width = width, .height = height, .bits_per_pixel = bits_per_pixel},
                  model::module_path(SCROLL2D_MODULE));
    host::Map& map = game.engine.files().create_map(1, 10, width + 3, height + 2);
    model::fill_with_noise(map, 99);
    game.bitmaps_changed();
    const auto go = [&](std::int32_t x, std::int32_t y) {
        game.write(0, Field::x0, x);
        game.write(0, Field::y0, y);
        game.frame();
    };
    game.call("scroll_start", {0, 1, 10, 0, -1, 15});
    std::int32_t x = 0;
    for (std::int32_t column = 0; column < width; ++column, go(++x, 0))
        for (std::int32_t y = 0; y < height; ++y) {
            go(x, y);
            for (std::int32_t dy = -(height / 2); dy <= height / 2; ++dy)
                for (std::int32_t dx = -(width / 2); dx <= width / 2; ++dx) {
                    go(x + dx, y + dy);
                    go(x, y);
                }
        }
}

TEST_CASE("every shift from every ring position leaves what a fill would, and leads back") {
    using Size = std::pair<std::int32_t, std::int32_t>;
    for (const Size& view : {Size{2, 2}, {3, 4}, {4, 3}, {5, 2}, {2, 5}, {9, 4}, {6, 6}})
        for (const std::int32_t bits_per_pixel : {8, 16, 32}) {
            CAPTURE(view.first);
            CAPTURE(view.second);
            CAPTURE(bits_per_pixel);
            REQUIRE_NOTHROW(visit_ring(view.first, view.second, bits_per_pixel));
        }
}

}  // namespace
