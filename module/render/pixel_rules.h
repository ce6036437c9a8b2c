// The pixel rules. A rule says what a pixel becomes when the pixel S of a plane is laid over D, the pixel
// that is already there: one struct each, its equation above it. Rules know no loop, and loops know no rule.
//
// All rules are branch-free arithmetic: a branch per pixel costs many times more, and this form is what
// compilers turn into vector code. At 32 bits two channels share one word under 0x00ff00ff; no lane ever
// exceeds 255 x 256, so none spills into the next.
//
// The divisor of all blends is 256, not 255, and a blended pixel's byte 3 is 0: contract, see
// docs/exactness.md.
#pragma once

#include <cstdint>

namespace scroll2d {

constexpr std::uint32_t alpha_of(std::uint32_t pixel) {
    return pixel >> 24;
}

// Two words of a blend, each channel one byte above its place, put together into a pixel:
// outer [channel 2][.][channel 0][.], middle [.][channel 1][.][.].
constexpr std::uint32_t join_channels(std::uint32_t outer, std::uint32_t middle) {
    return ((outer & 0xff00ff00) | (middle & 0xff0000)) >> 8;
}

// mix_pixel: each colour byte D + (((S - D) x f) >> 8), the shift flooring; byte 3 is 0.
// f is 0 to 256; 0 gives D's colour exactly, 256 gives S's.
//
// That is (D x 256 + (S - D) x f) >> 8, and D x 256 + (S - D) x f == D x (256 - f) + S x f lies between 0 and
// 255 x 256. So computing two lanes of it modulo 2^32 loses nothing, and a negative difference needs no care.
constexpr std::uint32_t mix_pixel(std::uint32_t d, std::uint32_t s, std::uint32_t f) {
    const std::uint32_t d_outer = d & 0xff00ff;
    const std::uint32_t s_outer = s & 0xff00ff;
    const std::uint32_t d_middle = d & 0xff00;
    const std::uint32_t s_middle = s & 0xff00;
    const std::uint32_t outer = (d_outer << 8) + (s_outer - d_outer) * f;
    const std::uint32_t middle = (d_middle << 8) + (s_middle - d_middle) * f;
    return join_channels(outer, middle);
}

// mix_pixel16: the same on each of the three colour fields, 5-6-5 bits. f is 0 to 255. Each field moves by
// its difference's share, which is negative as often as not; the sum is exact, since no field leaves its
// range. The difference comes doubled and f as f x 128, so that the share is the high half of a product of
// signed 16 bits, for which vector units have an instruction.
constexpr std::uint16_t mix_pixel16(std::uint16_t d, std::uint16_t s, std::uint16_t f) {
    const auto factor = static_cast<std::int16_t>(f << 7);
    const auto share = [factor](std::int16_t from, std::int16_t to) {
        return static_cast<std::uint16_t>((static_cast<std::int16_t>(to - from) * factor) >> 16);
    };
    const std::uint16_t high = share(d >> 10 & 62, s >> 10 & 62);
    const std::uint16_t middle = share(d >> 4 & 126, s >> 4 & 126);
    const std::uint16_t low = share(d << 1 & 62, s << 1 & 62);
    return static_cast<std::uint16_t>(d + (high << 11) + (middle << 5) + low);
}

constexpr std::uint16_t mix(std::uint16_t d, std::uint16_t s, std::uint16_t f) {
    return mix_pixel16(d, s, f);
}
constexpr std::uint32_t mix(std::uint32_t d, std::uint32_t s, std::uint32_t f) {
    return mix_pixel(d, s, f);
}

// fade_pixel, S over black: each colour byte ((S + 1) x f) >> 8; byte 3 is 0. f is 0 to 255.
constexpr std::uint32_t fade_pixel(std::uint32_t s, std::uint32_t f) {
    return join_channels(((s & 0xff00ff) + 0x010001) * f, ((s & 0xff00) + 0x0100) * f);
}

// D := S.
template <class Pixel>
struct Copy {
    constexpr Pixel operator()(Pixel, Pixel s) const { return s; }
};

// Neighbours are mostly alike, within a shape and around it. A rule with a long equation that leaves some
// pixels as they are may name the bits of S that decide its simple cases, for loops that ask once for many
// pixels: where none is set, D stays.
struct Cases {
    std::uint32_t deciding;         // bits of the pixels that lie in 32 bits of memory
    bool all_copies;                // where all are set: D := S, or else that is no simple case
    std::int32_t lines_a_surprise;  // from how many on it pays to ask, see module/render/calm.h
};
constexpr std::int32_t line_bytes = 64;  // of the caches: what is asked for at once
constexpr std::uint32_t alpha_bits = 0xff000000;
constexpr std::uint32_t every_bit = 0xffffffff;

// S = 0: D stays.  Otherwise D := S.
template <class Pixel>
struct Keyed {
    constexpr Pixel operator()(Pixel d, Pixel s) const { return s != 0 ? s : d; }
};

// D := mix(D, S, alpha).
template <class Pixel>
struct Blended {
    Pixel alpha;  // 0-254
    constexpr Pixel operator()(Pixel d, Pixel s) const { return mix(d, s, alpha); }
};

// S = 0: D stays.  Otherwise D := mix(D, S, alpha).
template <class Pixel>
struct KeyedBlended {
    Pixel alpha;  // 0-254
    static constexpr Cases cases{every_bit, false, 40};
    constexpr Pixel operator()(Pixel d, Pixel s) const {
        const auto drawn = s != 0 ? static_cast<Pixel>(~Pixel{0}) : Pixel{0};
        return static_cast<Pixel>((mix(d, s, alpha) & drawn) | (d & ~drawn));
    }
};

// Per-pixel alpha over black, a = byte 3 of S.  a = 0: D := 0.  a = 255: D := S.  Otherwise D :=
// fade_pixel(S, a). fade_pixel(S, 0) is 0 and fade_pixel(S, 255) has S's colour, so only byte 3 is left to
// choose.
struct OverBlack {
    constexpr std::uint32_t operator()(std::uint32_t, std::uint32_t s) const {
        const std::uint32_t a = alpha_of(s);
        return fade_pixel(s, a) | (a == 255 ? 0xff000000 : 0);
    }
};

// Per-pixel alpha over what is there.  a = 0: D stays.  a = 255: D := S.  Otherwise D := mix_pixel(D, S, a).
// A factor of 256 in place of 255 makes the mix give S's colour, and 0 gives D's.
struct AlphaOver {
    static constexpr Cases cases{alpha_bits, true, 16};
    constexpr std::uint32_t operator()(std::uint32_t d, std::uint32_t s) const {
        const std::uint32_t a = alpha_of(s);
        const std::uint32_t opaque = (a + 1) >> 8;  // 1 or 0
        const std::uint32_t top = a == 0 ? d : 0 - opaque;
        return mix_pixel(d, s, a + opaque) | (top & 0xff000000);
    }
};

// Per-pixel alpha under the scroll's alpha: e = ((a + 1) x alpha) >> 8, at most 254.
// e = 0: D stays.  Otherwise D := mix_pixel(D, S, e).
struct FadedAlphaOver {
    std::uint32_t alpha;  // 0-254
    static constexpr Cases cases{alpha_bits, false, 20};
    constexpr std::uint32_t operator()(std::uint32_t d, std::uint32_t s) const {
        const std::uint32_t e = (alpha_of(s) + 1) * alpha >> 8;
        return mix_pixel(d, s, e) | (e == 0 ? d & 0xff000000 : 0);
    }
};

// Two planes in one pass: the back pixel goes onto D by its rule, the front pixel onto that by its own.
// Every two-plane case is such a pair. By contract a transparent back pixel clears D's byte 3 where a front
// pixel is mixed in; no rule here does, and no result shows it, since mixing reads colour bytes only and
// clears byte 3 itself.
template <class Front, class Back>
struct Stacked {
    Front front;
    Back back;
    template <class Pixel>
    constexpr Pixel operator()(Pixel d, Pixel f, Pixel b) const {
        return front(back(d, b), f);
    }
};

// A pair has the cases of its front plane, or else of its back plane.
template <class Rule>
inline constexpr bool has_cases = requires {
    Rule::cases;
};
template <class Front, class Back>
inline constexpr bool has_cases<Stacked<Front, Back>> = has_cases<Front> || has_cases<Back>;

// Is a pair laid one plane after the other? Where both equations are long, that is as fast as one pass, each
// plane may be asked or not, and no loop is needed for the pair.
template <class Front, class Back>
inline constexpr bool laid_apart = has_cases<Front>&& has_cases<Back>;
template <class Front>
inline constexpr bool laid_apart<Front, OverBlack> = has_cases<Front>;

}  // namespace scroll2d
