// The product's branch-free pixel rules against the equations, over all operands of a channel. Whole pixels,
// where a carry from one channel into the next would show, are rows_test's.
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>

#include "module/render/pixel_rules.h"
#include "tests/model/pixels.h"

namespace {

using model::Pixel;

// Counts what differs without the cost of an assertion per pixel, and keeps the first difference.
struct Comparison {
    std::uint64_t wrong = 0;
    Pixel first[5]{};
    void operator()(Pixel expected, Pixel actual, Pixel d, Pixel s, Pixel f) {
        if (expected == actual || wrong++ != 0) return;
        const Pixel words[] = {d, s, f, expected, actual};
        std::copy_n(words, 5, first);
    }
    ~Comparison() {
        CAPTURE(first[0]);  // D
        CAPTURE(first[1]);  // S
        CAPTURE(first[2]);  // the factor
        CAPTURE(first[3]);  // expected
        CAPTURE(first[4]);  // what the rule gave
        CHECK(wrong == 0);
    }
};

// Neighbouring channels hold the complement, so lanes differ.
Pixel spread(Pixel c, Pixel byte3) {
    return c | (255 - c) << 8 | c << 16 | byte3 << 24;
}
std::uint16_t spread16(Pixel v) {
    return static_cast<std::uint16_t>((v & 31) << 11 | v << 5 | (63 - v) >> 1);
}

TEST_CASE("every rule holds for every D and S of a channel under every factor or opacity") {
    Comparison mix, mix16, fade, over, over_black;
    for (Pixel f = 0; f < 256; ++f)
        for (Pixel s = 0; s < 256; ++s) {
            const Pixel top = spread(s, f);
            fade(model::fade_pixel(top, static_cast<int>(f)), scroll2d::fade_pixel(top, f), 0, top, f);
            for (Pixel d = 0; d < 256; ++d) {
                const Pixel under = spread(d, 0xA5);
                mix(model::mix_pixel(under, top, static_cast<int>(f)), scroll2d::mix_pixel(under, top, f),
                    under, top, f);
                over(model::alpha_over(under, top), scroll2d::AlphaOver{}(under, top), under, top, f);
                over_black(model::alpha_over_black(top), scroll2d::OverBlack{}(under, top), under, top, f);
                if (d > 63 || s > 63) continue;
                mix16(model::mix_pixel16(spread16(d), spread16(s), static_cast<int>(f)),
                      scroll2d::mix_pixel16(spread16(d), spread16(s), static_cast<std::uint16_t>(f)),
                      spread16(d), spread16(s), f);
            }
        }
}

TEST_CASE("per-pixel alpha under a scroll's alpha holds for every pair of the two") {
    Comparison compare;
    for (Pixel alpha = 0; alpha < 255; ++alpha)
        for (Pixel a = 0; a < 256; ++a)
            for (Pixel c = 0; c < 256; c += 15)
                compare(model::faded_alpha_over(spread(255 - c, 0xA5), spread(c, a), static_cast<int>(alpha)),
                        scroll2d::FadedAlphaOver{alpha}(spread(255 - c, 0xA5), spread(c, a)),
                        spread(255 - c, 0xA5), spread(c, a), alpha);
}

}  // namespace
