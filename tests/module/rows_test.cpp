// Every build of the loops over rows, asking for simple cases and not, under every rule that a scroll can ask
// for, at every width up to a few groups of pixels, against the equations.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "host/engine.h"
#include "module/render/calm.h"
#include "module/render/plane_drawing.h"
#include "tests/model/inside.h"
#include "tests/model/pixels.h"

namespace {

using model::Look;
using scroll2d::Asking;
using scroll2d::DestinationRows;
using scroll2d::KeyedRules;
using scroll2d::OpaqueRules;
using scroll2d::PlaneRows;
using scroll2d::VectorUnit;
using scroll2d::with_rule;

constexpr std::int32_t kTall = scroll2d::band_rows + 3;
constexpr std::int32_t kWidest = 150;  // more than two groups, which have 64 pixels at the most
constexpr std::int32_t kMargin = 3;    // of the destination, on both sides of the rows

// Runs of pixels that are transparent, opaque or neither: the loops have short cuts for groups of a kind.
template <class Pixel>
std::vector<Pixel> noise(std::int32_t count, std::mt19937& random) {
    std::vector<Pixel> pixels;
    while (pixels.size() < static_cast<std::size_t>(count)) {
        const std::uint32_t kind = random();
        const std::uint32_t cleared = (kind & 3) == 0 ? 0xFFFFFFFF : (kind & 3) == 1 ? 0xFF000000 : 0;
        const std::uint32_t set = (kind & 3) == 2 ? 0xFF000000 : 0;
        for (std::uint32_t i = (kind >> 2 & 3) == 0 ? kind >> 4 & 127 : 1; i > 0; --i)
            pixels.push_back(static_cast<Pixel>((random() & ~cleared) | set));
    }
    pixels.resize(static_cast<std::size_t>(count));
    return pixels;
}

// Two planes, whose rings wrap at different rows, before a destination.
template <class Pixel>
class Scene {
  public:
    Scene(std::int32_t width, std::int32_t height, std::mt19937& random)
        : width_(width),
          height_(height),
          front_(noise<Pixel>(width * height, random)),
          back_(noise<Pixel>(width * height, random)),
          under_(noise<Pixel>((width + 2 * kMargin) * height, random)) {}

    // `expected` is an equation of D, F and B for the pixels of the view; all others stay.
    template <class Rule, class Expected>
    void front(Rule rule, Expected expected) const {
        check(rule, expected, plane(front_, 1));
    }
    template <class Rule, class Expected>
    void back(Rule rule, Expected expected) const {
        check(rule, expected, plane(back_, height_));
    }
    template <class Rule, class Expected>
    void both(Rule rule, Expected expected) const {
        check(rule, expected, plane(front_, 1), plane(back_, height_));
    }

  private:
    // The picture begins in the last `rows` rows of its ring and goes on at the ring's beginning.
    PlaneRows<Pixel> plane(const std::vector<Pixel>& ring, std::int32_t rows) const {
        return {ring.data() + (height_ - rows) * width_, width_, height_ * width_, rows};
    }
    std::size_t place(std::int32_t row, std::int32_t column, std::int32_t rows) const {
        return static_cast<std::size_t>((row + height_ - rows) % height_ * width_ + column);
    }

    template <class Rule, class Expected, class... Planes>
    void check(Rule rule, Expected expected, const Planes&... planes) const {
        const std::int32_t row_length = width_ + 2 * kMargin;
        std::vector<Pixel> wanted = under_;
        for (std::int32_t y = 0; y < height_; ++y)
            for (std::int32_t x = 0; x < width_; ++x) {
                Pixel& d = wanted[static_cast<std::size_t>(y * row_length + kMargin + x)];
                d = static_cast<Pixel>(expected(d, front_[place(y, x, 1)], back_[place(y, x, height_)]));
            }
        for (const VectorUnit unit : scroll2d::vector_units)
            for (const Asking asking : {Asking::never, Asking::always, Asking::where_calm}) {
                scroll2d::widest_unit = unit;
                scroll2d::asking = asking;
                if (scroll2d::vector_unit() != unit) continue;  // the processor lacks it
                CAPTURE(static_cast<int>(unit));
                CAPTURE(static_cast<int>(asking));
                std::vector<Pixel> drawn = under_;
                const DestinationRows<Pixel> d(drawn.data() + kMargin, row_length);
                scroll2d::lay_rows(height_, width_, rule, d, planes...);
                REQUIRE(drawn == wanted);
            }
    }

    std::int32_t width_, height_;
    std::vector<Pixel> front_, back_, under_;
};

// Plane 1 or plane 2 alone, and both in one pass, by rules that are chosen as the drawing routines choose
// them.
template <class Pixel, template <class> class Rules>
void check_rules(const Scene<Pixel>& scene, const Look& look) {
    const bool opaque = look.mode < 2;
    with_rule<Pixel, Rules>(look.front_alpha, look.alpha, [&](auto rule) {
        scene.front(rule, [&](auto d, auto f, auto) {
            return opaque ? model::single(look, d, f) : model::front_layer(look, d, f);
        });
    });
    with_rule<Pixel, Rules>(look.back_alpha, [&](auto back) {
        scene.back(back, [&](auto d, auto, auto b) { return model::back_layer(look, d, b); });
        with_rule<Pixel, KeyedRules>(look.front_alpha, look.alpha, [&](auto front) {
            scene.both(scroll2d::Stacked<decltype(front), decltype(back)>{front, back},
                       [&](auto d, auto f, auto b) { return model::two_planes(look, d, f, b); });
        });
    });
}

TEST_CASE_TEMPLATE("every build lays every rule as its equation says", Pixel, std::uint8_t, std::uint16_t,
                   std::uint32_t) {
    std::mt19937 random(sizeof(Pixel));
    scroll2d::find_vector_units();
    for (std::int32_t width = 1; width <= kWidest; ++width) {
        const Scene<Pixel> scene(width, width % 50 == 0 ? kTall : 4, random);
        for (const int alpha : {255, static_cast<int>(random() % 255)})
            for (const bool front_alpha : {false, true})
                for (const bool back_alpha : {false, true}) {
                    CAPTURE(width);
                    CAPTURE(alpha);
                    CAPTURE(front_alpha);
                    CAPTURE(back_alpha);
                    check_rules<Pixel, OpaqueRules>(scene,
                                                    {sizeof(Pixel), 0, alpha, front_alpha, back_alpha});
                    check_rules<Pixel, KeyedRules>(scene, {sizeof(Pixel), 2, alpha, front_alpha, back_alpha});
                }
    }
}

TEST_CASE("the widest unit that may be taken is taken, of those that the processor has") {
#if defined(__i386__)
    const VectorUnit best = __builtin_cpu_supports("avx2")     ? VectorUnit::avx2
                            : __builtin_cpu_supports("sse4.1") ? VectorUnit::sse4
                                                               : VectorUnit::sse2;
#else
    const VectorUnit best = VectorUnit::built_in;
#endif
    host::Engine engine{{}};
    engine.load(SCROLL2D_OPENED_MODULE);
    const auto& loaded = *static_cast<const model::Inside*>(engine.symbol("scroll2d_inside"));
    for (const VectorUnit widest : scroll2d::vector_units) {
        *loaded.widest_unit = widest;
        CHECK(loaded.vector_unit() == std::min(widest, best));
    }
}

// Rows of 64 lines of the caches, whose kinds change every `run` pixels; below them rows that begin `shift`
// pixels further on.
bool calm_with(std::int32_t run, std::int32_t shift, std::int32_t width = 1024) {
    constexpr std::uint32_t kinds[] = {0, 0xFF123456, 0x80123456};
    std::vector<std::uint32_t> pixels;
    for (std::int32_t i = 0; i < width + shift; ++i) pixels.push_back(kinds[i / run % 3]);
    return scroll2d::is_calm(scroll2d::AlphaOver::cases, pixels.data(), pixels.data() + shift, width);
}

TEST_CASE("a band is calm where its runs are long, or few of them end between its rows") {
    scroll2d::asking = Asking::where_calm;
    CHECK(calm_with(600, 600));
    CHECK(calm_with(16, 0));
    CHECK_FALSE(calm_with(16, 16));
    CHECK_FALSE(calm_with(100, 100));
    CHECK_FALSE(calm_with(1, 1));
    CHECK_FALSE(calm_with(600, 0, 128));  // too few lines
    CHECK_FALSE(calm_with(600, 0, 15));   // no whole one
}

}  // namespace
