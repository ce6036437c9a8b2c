// The rules of sprites. A rule says what a pixel becomes when the pixel S of a graphic is laid over D, the
// pixel that is already there: one struct each, its equation above it. `place` is column ^ row of D. Rules
// know no loop, and loops know no rule.
//
// All are branch-free arithmetic, which compilers turn into vector code. Blends compute in lanes of 16 bits,
// one for each channel or field of a colour; none ever exceeds 255 x 255 + 127 + 255, so none spills into the
// next.
#pragma once

#include <cstdint>

namespace host {

// t / 255 without a division, times 256: exact in the upper bytes for lanes up to 65534.
constexpr std::uint16_t over_255(std::uint16_t t) {
    return static_cast<std::uint16_t>(t + 1 + (t >> 8));
}
constexpr std::uint32_t over_255(std::uint32_t two_lanes) {
    return two_lanes + 0x10001 + (two_lanes >> 8 & 0xff00ff);
}

// mix: each field (S x a + D x (255 - a) + 127) / 255. a is 0 to 255; 0 gives D's fields, 255 gives S's.
//
// S x a + D x (255 - a) == D x 255 + (S - D) x a. What a lane holds in the end is right modulo 2^16, so a
// negative difference needs no care.
//
// At 16 bits one field after the other, of 5, 6 and 5 bits.
constexpr std::uint16_t mix(std::uint16_t d, std::uint16_t s, std::uint16_t a) {
    const auto field = [=](int shift, int mask) {
        const int from = d >> shift & mask;
        const int t = from * 255 + ((s >> shift & mask) - from) * a + 127;
        return over_255(static_cast<std::uint16_t>(t)) >> 8 << shift;
    };
    return static_cast<std::uint16_t>(field(11, 31) | field(5, 63) | field(0, 31));
}
// At 32 bits channels 0 and 2 in one word, [.][channel 2][.][channel 0], and channel 1 alone. Byte 3 is 255.
constexpr std::uint32_t mix(std::uint32_t d, std::uint32_t s, std::uint32_t a) {
    const std::uint32_t d_outer = d & 0xff00ff;
    const std::uint32_t d_middle = d >> 8 & 0xff;
    const std::uint32_t outer = d_outer * 255 + ((s & 0xff00ff) - d_outer) * a + 0x7f007f;
    const std::uint32_t middle = d_middle * 255 + ((s >> 8 & 0xff) - d_middle) * a + 0x7f;
    return 0xff000000 | (over_255(outer) >> 8 & 0xff00ff) | (over_255(middle) & 0xff00);
}

// The colour of a sprite's pixels: their own, or one for all of them.
template <class Pixel>
struct Ink {
    Pixel kept = static_cast<Pixel>(-1);  // bits of S that stay: all of them, or none in a silhouette
    Pixel silhouette = 0;
    constexpr Pixel operator()(Pixel s) const { return static_cast<Pixel>((s & kept) | silhouette); }
};

// S = 0: D stays.  Otherwise D := ink(S).
template <class Pixel>
struct Keyed {
    Ink<Pixel> ink;
    constexpr Pixel operator()(Pixel d, Pixel s, std::int32_t) const { return s != 0 ? ink(s) : d; }
};

// S = 0, or an odd place: D stays.  Otherwise D := ink(S).
template <class Pixel>
struct Chequered {
    Ink<Pixel> ink;
    constexpr Pixel operator()(Pixel d, Pixel s, std::int32_t place) const {
        return ((s != 0) & ((place & 1) == 0)) ? ink(s) : d;
    }
};

// S = 0: D stays.  Otherwise D := mix(D, ink(S), opacity).
template <class Pixel>
struct Mixed {
    Ink<Pixel> ink;
    Pixel opacity;  // 1-254
    constexpr Pixel operator()(Pixel d, Pixel s, std::int32_t) const {
        return s != 0 ? mix(d, ink(s), opacity) : d;
    }
};

// a = alpha of S.  a = 0: D stays.  Otherwise D := mix(D, ink(S), a).
//
// Graphics with alpha are mostly transparent around a shape and opaque within it. So these rules name the
// bits of S that decide: where none of them is set, D stays; where all are and `all_copies`, D := ink(S).
// Loops ask once for several pixels.
struct AlphaMixed {
    static constexpr std::uint32_t deciding = 0xff000000;
    static constexpr bool all_copies = true;
    Ink<std::uint32_t> ink;
    constexpr std::uint32_t operator()(std::uint32_t d, std::uint32_t s, std::int32_t) const {
        return (s & deciding) != 0 ? mix(d, ink(s), s >> 24) : d;
    }
};

// The same with a = (alpha of S x opacity + 127) / 255.
struct FadedAlphaMixed {
    static constexpr std::uint32_t deciding = 0xff000000;
    static constexpr bool all_copies = false;
    Ink<std::uint32_t> ink;
    std::uint32_t opacity;  // 1-254
    constexpr std::uint32_t operator()(std::uint32_t d, std::uint32_t s, std::int32_t) const {
        const std::uint32_t a = over_255((s >> 24) * opacity + 127) >> 8 & 0xff;
        return a != 0 ? mix(d, ink(s), a) : d;
    }
};

}  // namespace host
