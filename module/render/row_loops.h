// The loops that lay a rule over rows of pixels. Loops know no rule.
#pragma once

#include <cstdint>
#include <cstring>

#include "module/render/pixel_rules.h"

namespace scroll2d {

// What becomes part of a vector loop, and what runs for a few pixels only and has to be small. In builds
// without optimisation these are plain functions.
#if defined(__OPTIMIZE__)
#define SCROLL2D_PART_OF_LOOP __attribute__((always_inline))
#else
#define SCROLL2D_PART_OF_LOOP
#endif
#if defined(__OPTIMIZE__) && !defined(__clang__)
#define SCROLL2D_SMALL __attribute__((optimize("O2"), noinline))
#else
#define SCROLL2D_SMALL __attribute__((noinline))
#endif

// A row of fewer pixels than a group has.
template <class Pixel, class Rule, class... Source>
SCROLL2D_SMALL void lay_short_row(Pixel* d, std::int32_t width, Rule rule, const Source*... s) {
    for (std::int32_t i = 0; i < width; ++i) d[i] = rule(d[i], s[i]...);
}

// Which of the deciding bits of a group's pixels are set. The first pixels tell which answer is possible, so
// that little is lost where each pixel differs from the next.
enum class BitsSet { none, all, some };

template <class Rule, std::int32_t group, class Pixel>
SCROLL2D_PART_OF_LOOP inline BitsSet bits_set(const Pixel* s) {
    constexpr std::uint32_t deciding = Rule::cases.deciding;
    constexpr std::int32_t word_pixels = sizeof deciding / sizeof(Pixel);
    const auto word_at = [s](std::int32_t i) SCROLL2D_PART_OF_LOOP {
        std::uint32_t word = 0;
        std::memcpy(&word, s + i, sizeof word);
        return word;
    };
    const std::uint32_t first = word_at(0) & deciding;
    if (first == 0) {
        std::uint32_t in_any = 0;
#pragma GCC unroll 1
        for (std::int32_t i = 0; i < group; i += word_pixels) in_any |= word_at(i);
        return (in_any & deciding) == 0 ? BitsSet::none : BitsSet::some;
    }
    if (Rule::cases.all_copies && first == deciding) {
        std::uint32_t in_all = deciding;
#pragma GCC unroll 1
        for (std::int32_t i = 0; i < group; i += word_pixels) in_all &= word_at(i);
        return in_all == deciding ? BitsSet::all : BitsSet::some;
    }
    return BitsSet::some;
}

// Lays a group of pixels. Their number is known to the compiler and fills vector registers, so that they
// become a few operations without a loop. It must meet the loop as one, not unrolled before: between branches
// it would not find the vectors again.
template <std::int32_t group, class Pixel, class Rule, class... Source>
SCROLL2D_PART_OF_LOOP inline void lay_pixels(Pixel* __restrict d, const Rule& rule,
                                             const Source* __restrict... s) {
#pragma GCC unroll 1
    for (std::int32_t i = 0; i < group; ++i) d[i] = rule(d[i], s[i]...);
}

// Lays a group of pixels of one plane by the shortest rule that holds for them.
template <std::int32_t group, class Pixel, class Rule>
SCROLL2D_PART_OF_LOOP inline void ask_and_lay(Pixel* __restrict d, const Rule& rule,
                                              const Pixel* __restrict s) {
    if constexpr (has_cases<Rule>) {
        const BitsSet set = bits_set<Rule, group>(s);
        if (set == BitsSet::all) return lay_pixels<group>(d, Copy<Pixel>{}, s);
        if (set == BitsSet::none) return;
    }
    lay_pixels<group>(d, rule, s);
}

// The same for both planes. Where the front plane leaves a group to the back plane, or hides it, that is all.
template <std::int32_t group, class Pixel, class Front, class Back>
SCROLL2D_PART_OF_LOOP inline void ask_and_lay(Pixel* __restrict d, const Stacked<Front, Back>& rule,
                                              const Pixel* __restrict front, const Pixel* __restrict back) {
    if constexpr (has_cases<Front>) {
        const BitsSet set = bits_set<Front, group>(front);
        if (set == BitsSet::none) return lay_pixels<group>(d, rule.back, back);
        if (set == BitsSet::all) return lay_pixels<group>(d, Copy<Pixel>{}, front);
        lay_pixels<group>(d, rule, front, back);
    } else {
        ask_and_lay<group>(d, rule.back, back);
        lay_pixels<group>(d, rule.front, front);
    }
}

// The vector registers that a loop is built for.
struct Registers {
    std::int32_t bytes;
    bool in_pairs;  // two groups at a time are faster, which makes the loop longer
};

// Lays a row of one plane, or one of the front plane and one of the back plane, over a row of the
// destination. They never overlap: buffers are the module's own. A group is what a vector register holds;
// where it is asked for, a line of the caches, so that a question is asked for enough pixels to pay.
//
// Where the row is no whole number of groups, the last group overlaps the one before it. It is laid over a
// copy of D taken beforehand, since a pixel blended twice would be wrong.
template <bool asks, Registers registers, class Pixel, class Rule, class... Source>
SCROLL2D_PART_OF_LOOP inline void lay_row(Pixel* __restrict d, std::int32_t width, Rule rule,
                                          const Source* __restrict... s) {
    constexpr std::int32_t group =
        (asks ? line_bytes : registers.bytes) / static_cast<std::int32_t>(sizeof(Pixel));
    if (width < group) return lay_short_row(d, width, rule, s...);
    const std::int32_t whole = width & -group;
    const std::int32_t last = width - group;
    Pixel overlapping[group];
    if (whole != width) lay_pixels<group>(overlapping, Copy<Pixel>{}, d + last);
    if constexpr (asks) {
        for (std::int32_t at = 0; at < whole; at += group) ask_and_lay<group>(d + at, rule, s + at...);
    } else if constexpr (registers.in_pairs) {
#pragma GCC unroll 2
        for (std::int32_t at = 0; at < whole; at += group) lay_pixels<group>(d + at, rule, s + at...);
    } else {
        for (std::int32_t at = 0; at < whole; at += group) lay_pixels<group>(d + at, rule, s + at...);
    }
    if (whole != width) {
        lay_pixels<group>(overlapping, rule, s + last...);
        lay_pixels<group>(d + last, Copy<Pixel>{}, overlapping);
    }
}

// Lays rows first to end - 1. `asks` is for rules that have cases.
template <bool asks, Registers registers, class Rule, class Destination, class... Source>
SCROLL2D_PART_OF_LOOP inline void lay_rows_in_groups(std::int32_t first, std::int32_t end, std::int32_t width,
                                                     Rule rule, const Destination& d, const Source&... s) {
    for (std::int32_t row = first; row < end; ++row) lay_row<asks, registers>(d[row], width, rule, s[row]...);
}

}  // namespace scroll2d
