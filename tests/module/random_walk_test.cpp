// Random walks of one scroll over maps of every relation to its view. After each draw the whole screen is
// compared with the model, so is everything else that the module could have touched.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>

#include "tests/effort.h"
#include "tests/model/lockstep.h"

namespace {

using model::Field;
using model::fill_with_noise;
using model::Lockstep;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kWalks = 120;
#else
constexpr int kWalks = 800;
#endif

constexpr std::int32_t kMargin = 5;  // of the destination around the view

class Random {
  public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    std::int32_t below(std::int32_t n) {
        return static_cast<std::int32_t>(engine_() % static_cast<std::uint32_t>(n));
    }
    std::int32_t between(std::int32_t low, std::int32_t high) { return low + below(high - low + 1); }
    std::int32_t of(std::initializer_list<std::int32_t> choices) {
        return choices.begin()[below(static_cast<std::int32_t>(choices.size()))];
    }
    std::uint32_t bits() { return engine_(); }

  private:
    std::mt19937 engine_;
};

// An extent of a map beside a view's: one pixel, smaller, equal, a little larger, far larger.
std::int32_t map_extent(Random& random, std::int32_t view) {
    return random.of(
        {1, random.between(1, view), view, view + random.between(1, 4), view * 3 + random.below(60)});
}

// Takes the script's alpha and positions to somewhere near, far, or outside of the world's sensible part.
void steer(Lockstep& game, Random& random, std::int32_t width, std::int32_t height) {
    for (const auto& [x, y] : {std::pair{Field::x0, Field::y0}, std::pair{Field::x1, Field::y1}}) {
        const std::int32_t reach = random.of({1, 2, width / 2 + 1, width, 1000});
        if (random.below(4) != 0) game.nudge(0, x, random.between(-reach, reach));
        if (random.below(4) != 0) game.nudge(0, y, random.between(-1 - height / 2, 1 + height / 2));
        if (random.below(60) == 0) game.write(0, x, random.of({INT32_MAX, INT32_MIN, INT32_MAX - width, -1}));
    }
    if (random.below(6) == 0) game.write(0, Field::alpha, random.of({0, 1, 127, 128, 254, 255}));
}

void walk(std::uint32_t seed) {
    Random random(seed);
    const bool wide = random.below(8) == 0;  // long rows are drawn another way
    const std::int32_t width =
        wide ? random.between(300, 700)
             : random.of({random.between(1, 17), random.between(1, 17), random.between(18, 70)});
    const std::int32_t height =
        wide ? random.between(1, 9)
             : random.of({random.between(1, 9), random.between(1, 9), random.between(10, 40)});
    Lockstep game({.width = width + 2 * kMargin,
                   .height = height + 2 * kMargin,
                   .bits_per_pixel = random.of({8, 16, 32, 32}),
                   .fence = random.of({0, 1}) != 0 ? host::Fence::after : host::Fence::before},
                  model::module_path(SCROLL2D_MODULE));
    host::Map* maps[2];
    for (std::int32_t i = 0; i < 2; ++i) {
        maps[i] =
            &game.engine.files().create_map(1, 10 + i, map_extent(random, width), map_extent(random, height));
        maps[i]->set_alpha_flag(random.below(2) != 0);
        fill_with_noise(*maps[i], random.bits());
        if (random.below(2) != 0) {
            const __RVKPoint2D__ reference{random.between(-3, 90), random.between(-3, 60)};
            maps[i]->set_control_points({&reference, 1});
        }
    }
    fill_with_noise(game.engine.screen(), random.bits());
    game.engine.regions().define(1, kMargin, kMargin, kMargin + width - 1, kMargin + height - 1);
    game.bitmaps_changed();
    game.call("scroll_start", {0, 1, 10, random.of({0, 11, 11}), 1, random.below(16), random.below(4)});
    for (int i = 0; i < 30; ++i) {
        steer(game, random, width, height);
        if (random.below(8) == 0) {  // drawn anew, and on show only where it comes into view or is refreshed
            fill_with_noise(*maps[random.below(2)], random.bits());
            game.bitmaps_changed();
        }
        if (random.below(16) == 0) game.call("scroll_refresh", {0});
        if (random.below(3) == 0) game.call("scroll_move", {0});
        game.frame();
    }
}

TEST_CASE("a walk shows the map wherever it goes") {
    const int walks = tests::rounds(kWalks);
    for (int seed = 1; seed <= walks; ++seed) {
        CAPTURE(seed);
        REQUIRE_NOTHROW(walk(static_cast<std::uint32_t>(seed)));
    }
}

// From every pixel of the ring as the read pointer, every shift that is not yet a refill, and the way back.
void visit_ring(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel) {
    Lockstep game({.width = width, .height = height, .bits_per_pixel = bits_per_pixel},
                  model::module_path(SCROLL2D_MODULE));
    host::Map& map = game.engine.files().create_map(1, 10, width + 3, height + 2);
    fill_with_noise(map, 99);
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
    const struct {
        std::int32_t width, height;
    } views[] = {{2, 2}, {3, 4}, {4, 3}, {5, 2}, {2, 5}, {9, 4}, {6, 6}};
    for (const auto& view : views)
        for (const std::int32_t bits_per_pixel : {8, 16, 32}) {
            CAPTURE(view.width);
            CAPTURE(view.height);
            CAPTURE(bits_per_pixel);
            REQUIRE_NOTHROW(visit_ring(view.width, view.height, bits_per_pixel));
        }
}

}  // namespace
