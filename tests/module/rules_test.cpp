// The product's branch-free pixel rules against the equations: over all operands of a channel, and over
// random whole pixels, where a carry from one channel into the next would show.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <cstdint>
#include <random>
#include <string>

#include "module/render/pixel_rules.h"
#include "tests/model/pixels.h"

namespace {

using model::Pixel;

// Compares without the cost of an assertion per pixel; the first difference is what the test reports.
struct Comparison {
    std::uint64_t wrong = 0;
    std::string first;
    void operator()(Pixel expected, Pixel actual, Pixel d, Pixel s, Pixel third) {
        if (expected == actual || wrong++ != 0) return;
        char text[120];
        std::snprintf(text, sizeof text, "D %08x S %08x third %08x: expected %08x, got %08x", d, s, third,
                      expected, actual);
        first = text;
    }
    ~Comparison() {
        INFO(first);
        CHECK(wrong == 0);
    }
};

// Neighbouring channels hold the complement, so lanes differ.
Pixel spread(int channel) {
    const auto c = static_cast<Pixel>(channel);
    return c | (255 - c) << 8 | c << 16;
}

// Half of the bytes are 0 or 255, where the rules change.
Pixel edgy(std::mt19937& random) {
    Pixel pixel = random();
    const Pixel kinds = random();
    for (int i = 0; i < 4; ++i) {
        const Pixel byte = 0xFFU << 8 * i;
        if ((kinds >> 4 * i & 3) == 0) pixel &= ~byte;
        if ((kinds >> 4 * i & 3) == 1) pixel |= byte;
    }
    return (kinds >> 16 & 15) == 0 ? 0 : pixel;
}

// All D and S of a channel under every opacity in byte 3 of S; D's byte 3 is 0xA5, to be kept or lost.
template <class Rule, class Expected>
void compare_alpha_rule(Rule rule, Expected expected) {
    Comparison compare;
    for (int a = 0; a < 256; ++a)
        for (int d = 0; d < 256; ++d)
            for (int s = 0; s < 256; ++s) {
                const Pixel under = spread(d) | 0xA5000000;
                const Pixel over = spread(s) | static_cast<Pixel>(a) << 24;
                compare(expected(under, over), rule(under, over), under, over, 0);
            }
}

TEST_CASE("mix_pixel and fade_pixel hold for every channel value and factor") {
    Comparison mix;
    Comparison fade;
    for (int f = 0; f < 256; ++f)
        for (int s = 0; s < 256; ++s) {
            const Pixel over = spread(s) | 0xC3000000;
            const auto factor = static_cast<Pixel>(f);
            fade(model::fade_pixel(over, f), scroll2d::fade_pixel(over, factor), 0, over, factor);
            for (int d = 0; d < 256; ++d) {
                const Pixel under = spread(d) | 0x5A000000;
                mix(model::mix_pixel(under, over, f), scroll2d::mix_pixel(under, over, factor), under, over,
                    factor);
            }
        }
}

TEST_CASE("mix_pixel16 holds for every value of each field and every factor") {
    Comparison compare;
    for (int f = 0; f < 256; ++f)
        for (int s = 0; s < 64; ++s)
            for (int d = 0; d < 64; ++d) {
                const auto of = [](int v) {
                    return static_cast<std::uint16_t>((v & 31) << 11 | v << 5 | (63 - v) >> 1);
                };
                const std::uint16_t under = of(d);
                const std::uint16_t over = of(s);
                compare(model::mix_pixel16(under, over, f),
                        scroll2d::mix_pixel16(under, over, static_cast<std::uint16_t>(f)), under, over,
                        static_cast<Pixel>(f));
            }
}

TEST_CASE("per-pixel alpha over the destination and over black") {
    compare_alpha_rule(scroll2d::AlphaOver{}, model::alpha_over);
    compare_alpha_rule(scroll2d::OverBlack{}, [](Pixel, Pixel s) { return model::alpha_over_black(s); });
}

TEST_CASE("per-pixel alpha under a scroll alpha holds for every pair of the two") {
    std::mt19937 random(7);
    Comparison compare;
    for (Pixel alpha = 0; alpha < 255; ++alpha)
        for (Pixel a = 0; a < 256; ++a)
            for (int i = 0; i < 16; ++i) {
                const Pixel d = edgy(random);
                const Pixel s = (edgy(random) & 0xFFFFFF) | a << 24;
                compare(model::faded_alpha_over(d, s, static_cast<int>(alpha)),
                        scroll2d::FadedAlphaOver{alpha}(d, s), d, s, alpha);
            }
}

}  // namespace
