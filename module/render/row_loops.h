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

// The pixels at the end of a row that fill no group.
template <class Pixel, class Rule, class... Source>
SCROLL2D_SMALL void lay_rest(Pixel* d, std::int32_t width, Rule rule, const Source*... s) {
    for (std::int32_t i = 0; i < width; ++i) d[i] = rule(d[i], s[i]...);
}

// Does a rule, or one of two that are stacked, name cases for groups of pixels?
template <class Rule>
inline constexpr bool has_cases = requires {
    typename Rule::GroupCases;
};
template <class Front, class Back>
inline constexpr bool has_cases<Stacked<Front, Back>> = has_cases<Front> || has_cases<Back>;

// Which of the deciding bits of a group's pixels are set. The first pixels tell which answer is possible, so
// that little is lost where each pixel differs from the next.
enum class BitsSet { none, all, some };

template <class Cases, std::int32_t group, class Pixel>
SCROLL2D_PART_OF_LOOP inline BitsSet bits_set(const Pixel* s) {
    constexpr std::uint32_t deciding = Cases::deciding;
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
    if (Cases::all_copies && first == deciding) {
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
SCROLL2D_PART_OF_LOOP inline void lay_group(Pixel* __restrict d, const Rule& rule,
                                            const Pixel* __restrict s) {
    if constexpr (has_cases<Rule>) {
        const BitsSet set = bits_set<typename Rule::GroupCases, group>(s);
        if (set == BitsSet::none) return;
        if (set == BitsSet::all) return lay_pixels<group>(d, Copy<Pixel>{}, s);
    }
    lay_pixels<group>(d, rule, s);
}

// The same for both planes. Where the front plane leaves a group to the back plane, or hides it, that is all.
template <std::int32_t group, class Pixel, class Front, class Back>
SCROLL2D_PART_OF_LOOP inline void lay_group(Pixel* __restrict d, const Stacked<Front, Back>& rule,
                                            const Pixel* __restrict front, const Pixel* __restrict back) {
    if constexpr (has_cases<Front>) {
        const BitsSet set = bits_set<typename Front::GroupCases, group>(front);
        if (set == BitsSet::none) return lay_group<group>(d, rule.back, back);
        if (set == BitsSet::all) return lay_pixels<group>(d, Copy<Pixel>{}, front);
    }
    if constexpr (has_cases<Back>) {
        lay_group<group>(d, rule.back, back);
        lay_pixels<group>(d, rule.front, front);
    } else {
        lay_pixels<group>(d, rule, front, back);
    }
}

// Lays a row of one plane, or one of the front plane and one of the back plane, over a row of the
// destination. They never overlap: buffers are the module's own. A group is what a vector register holds; for
// rules with cases it is a line of the caches, so that a question is asked for enough pixels to pay.
template <std::int32_t register_bytes, class Pixel, class Rule, class... Source>
SCROLL2D_PART_OF_LOOP inline void lay_row(Pixel* __restrict d, std::int32_t width, Rule rule,
                                          const Source* __restrict... s) {
    constexpr std::int32_t group_bytes = has_cases<Rule> ? 64 : register_bytes;
    constexpr std::int32_t group = group_bytes / static_cast<std::int32_t>(sizeof(Pixel));
    const std::int32_t whole = width & -group;
    // Two groups at a time are up to a tenth faster where a group is one register.
    if constexpr (group_bytes == register_bytes) {
#pragma GCC unroll 2
        for (std::int32_t at = 0; at < whole; at += group) lay_group<group>(d + at, rule, s + at...);
    } else {
        for (std::int32_t at = 0; at < whole; at += group) lay_group<group>(d + at, rule, s + at...);
    }
    if (whole != width) lay_rest(d + whole, width - whole, rule, s + whole...);
}

template <std::int32_t register_bytes, class Rule, class Destination, class... Source>
SCROLL2D_PART_OF_LOOP inline void lay_rows_in_groups(std::int32_t height, std::int32_t width, Rule rule,
                                                     const Destination& d, const Source&... s) {
    for (std::int32_t row = 0; row < height; ++row) lay_row<register_bytes>(d[row], width, rule, s[row]...);
}

}  // namespace scroll2d
