// What a pixel becomes when planes are laid over it, written as the equations stand: branches, signed
// arithmetic, one channel at a time. Half of the oracle; the product computes the same in other ways.
#pragma once

#include <cstdint>

namespace model {

using Pixel = std::uint32_t;  // of any depth, in the low bits

inline int field(Pixel p, int shift, int mask) {
    return static_cast<int>(p >> shift) & mask;
}
inline Pixel placed(int value, int shift) {
    return static_cast<Pixel>(value) << shift;
}

// The shift is arithmetic: it floors toward minus infinity.
inline int mix_channel(int d, int s, int f) {
    return d + (((s - d) * f) >> 8);
}

// Byte 3 of the result is 0.
inline Pixel mix_pixel(Pixel d, Pixel s, int f) {
    Pixel out = 0;
    for (const int shift : {0, 8, 16})
        out |= placed(mix_channel(field(d, shift, 255), field(s, shift, 255), f), shift);
    return out;
}

inline Pixel mix_pixel16(Pixel d, Pixel s, int f) {
    return placed(mix_channel(field(d, 11, 31), field(s, 11, 31), f), 11) |
           placed(mix_channel(field(d, 5, 63), field(s, 5, 63), f), 5) |
           placed(mix_channel(field(d, 0, 31), field(s, 0, 31), f), 0);
}

// Over black; byte 3 of the result is 0.
inline Pixel fade_pixel(Pixel s, int f) {
    Pixel out = 0;
    for (const int shift : {0, 8, 16}) out |= placed(((field(s, shift, 255) + 1) * f) >> 8, shift);
    return out;
}

inline int opacity(Pixel s) {
    return field(s, 24, 255);
}
inline int effective_alpha(int a, int alpha) {
    return ((a + 1) * alpha) >> 8;
}

// What the choice of a rule depends on.
struct Look {
    int bytes = 4;  // per pixel
    int mode = 0;   // 0 to 3
    int alpha = 255;
    bool front_alpha = false;  // alpha flag of plane 1's map
    bool back_alpha = false;   // of plane 2's
};

inline Pixel blend(const Look& look, Pixel d, Pixel s, int f) {
    return look.bytes == 2 ? mix_pixel16(d, s, f) : mix_pixel(d, s, f);
}

// Per-pixel alpha laid over what is there, and over black.
inline Pixel alpha_over(Pixel d, Pixel s) {
    const int a = opacity(s);
    if (a == 0) return d;
    return a == 255 ? s : mix_pixel(d, s, a);
}
inline Pixel alpha_over_black(Pixel s) {
    const int a = opacity(s);
    if (a == 0) return 0;
    return a == 255 ? s : fade_pixel(s, a);
}
inline Pixel faded_alpha_over(Pixel d, Pixel s, int alpha) {
    const int e = effective_alpha(opacity(s), alpha);
    return e == 0 ? d : mix_pixel(d, s, e);
}

// One plane covering its view: one plane, mode 0.
inline Pixel single(const Look& look, Pixel d, Pixel s) {
    if (look.bytes == 1) return s;
    const bool per_pixel = look.bytes == 4 && look.front_alpha;
    if (look.alpha == 255) return per_pixel ? alpha_over_black(s) : s;
    return per_pixel ? faded_alpha_over(d, s, look.alpha) : blend(look, d, s, look.alpha);
}

// Plane 1 by itself, always keyed.
inline Pixel front_layer(const Look& look, Pixel d, Pixel s) {
    if (look.bytes == 4 && look.front_alpha)
        return look.alpha == 255 ? alpha_over(d, s) : faded_alpha_over(d, s, look.alpha);
    if (s == 0) return d;
    return look.bytes == 1 || look.alpha == 255 ? s : blend(look, d, s, look.alpha);
}

// Plane 2 by itself: opaque in modes 0 and 1, keyed in 2 and 3.
inline Pixel back_layer(const Look& look, Pixel d, Pixel s) {
    const bool keyed = look.mode != 0 && look.mode != 1;
    if (look.bytes == 4 && look.back_alpha) return keyed ? alpha_over(d, s) : alpha_over_black(s);
    return keyed && s == 0 ? d : s;
}

// Both planes in one pass at a scroll alpha of 255: modes 0 and 2. Eight cases.
inline Pixel one_pass(const Look& look, Pixel d, Pixel f, Pixel b) {
    const bool keyed = look.mode != 0;
    const bool front_alpha = look.bytes == 4 && look.front_alpha;
    const bool back_alpha = look.bytes == 4 && look.back_alpha;
    const auto plain_back = [&] { return keyed && b == 0 ? d : b; };
    const auto alpha_back = [&] { return keyed ? alpha_over(d, b) : alpha_over_black(b); };
    const int a = opacity(f);
    if (!front_alpha) {
        if (f != 0) return f;
        return back_alpha ? alpha_back() : plain_back();
    }
    if (a == 255) return f;
    if (!back_alpha) {
        if (a == 0) return plain_back();
        return keyed && b == 0 ? mix_pixel(d, f, a) : mix_pixel(b, f, a);
    }
    if (a == 0) return alpha_back();
    const int back_opacity = opacity(b);
    const Pixel under = !keyed                ? alpha_over_black(b)
                        : back_opacity == 255 ? b
                                              : mix_pixel(d, b, back_opacity);
    return mix_pixel(under, f, a);
}

// Both planes: with a scroll alpha, where the depth knows one, as two layers.
inline Pixel two_planes(const Look& look, Pixel d, Pixel f, Pixel b) {
    if (look.bytes > 1 && look.alpha != 255) return front_layer(look, back_layer(look, d, b), f);
    return one_pass(look, d, f, b);
}

}  // namespace model
