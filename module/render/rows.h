// Rows of pixels: where they lie, and the loops that lay a rule over them. Loops know no rule.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/contract/host_records.h"
#include "module/render/pixel_rules.h"
#include "module/render/vector_unit.h"
#include "module/state/plane.h"

namespace scroll2d {

// The rows of a plane's picture, by the reading rule of module/buffer/buffer.h.
template <class Pixel>
class PlaneRows {
  public:
    PlaneRows(const ScrollRecord& r, const ConstPlane& plane)
        : start_(reinterpret_cast<const Pixel*>(plane.start())),
          width_(r.width),
          ring_size_(r.ring_size),
          rows_to_wrap_(plane.rows_to_wrap()) {}
    PlaneRows(const Pixel* start, std::ptrdiff_t width, std::ptrdiff_t ring_size, std::int32_t rows_to_wrap)
        : start_(start), width_(width), ring_size_(ring_size), rows_to_wrap_(rows_to_wrap) {}
    PlaneRows<std::uint8_t> in_bytes() const {
        constexpr std::ptrdiff_t size = sizeof(Pixel);
        return {reinterpret_cast<const std::uint8_t*>(start_), width_ * size, ring_size_ * size,
                rows_to_wrap_};
    }
    const Pixel* operator[](std::int32_t row) const {
        return start_ + (static_cast<std::ptrdiff_t>(row) * width_ - (row < rows_to_wrap_ ? 0 : ring_size_));
    }

  private:
    const Pixel* start_;
    std::ptrdiff_t width_;
    std::ptrdiff_t ring_size_;
    std::int32_t rows_to_wrap_;
};

// The rows of the view on the destination.
template <class Pixel>
class DestinationRows {
  public:
    explicit DestinationRows(const ScrollRecord& r)
        : origin_(static_cast<Pixel*>(r.dest_map->pixels) + r.dest_x +
                  static_cast<std::ptrdiff_t>(r.dest_y) * r.dest_map->width),
          width_(r.dest_map->width) {}
    DestinationRows(Pixel* origin, std::ptrdiff_t width) : origin_(origin), width_(width) {}
    DestinationRows<std::uint8_t> in_bytes() const {
        constexpr std::ptrdiff_t size = sizeof(Pixel);
        return {reinterpret_cast<std::uint8_t*>(origin_), width_ * size};
    }
    Pixel* operator[](std::int32_t row) const { return origin_ + row * width_; }

  private:
    Pixel* origin_;
    std::ptrdiff_t width_;
};

// What becomes part of a vector loop; a vector loop for one unit, with all that it calls; and what runs for a
// few pixels only and has to be small. In builds without optimisation these are plain functions.
#if defined(__OPTIMIZE__)
#define SCROLL2D_PART_OF_LOOP __attribute__((always_inline))
#define SCROLL2D_VECTOR_LOOP(unit) __attribute__((target(unit), flatten, noinline))
#else
#define SCROLL2D_PART_OF_LOOP
#define SCROLL2D_VECTOR_LOOP(unit)
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

// One build for each vector unit. The loop over the rows belongs to it: on a row of 320 bytes a call would
// cost as much as a quarter of the pixels.
template <class... Arguments>
SCROLL2D_VECTOR_LOOP("avx2")
void lay_rows_avx2(const Arguments&... arguments) {
    lay_rows_in_groups<32>(arguments...);
}
template <class... Arguments>
SCROLL2D_VECTOR_LOOP("sse4.1")
void lay_rows_sse4(const Arguments&... arguments) {
    lay_rows_in_groups<16>(arguments...);
}
template <class... Arguments>
SCROLL2D_VECTOR_LOOP("sse2")
void lay_rows_sse2(const Arguments&... arguments) {
    lay_rows_in_groups<16>(arguments...);
}

// Takes the best build that this processor runs. One call for the three, by its address, keeps the code of
// each rule small.
template <class... Arguments>
void lay_rows_in_vectors(const Arguments&... arguments) {
    const VectorUnit unit = vector_unit();
    const auto lay = unit == VectorUnit::avx2   ? lay_rows_avx2<Arguments...>
                     : unit == VectorUnit::sse4 ? lay_rows_sse4<Arguments...>
                                                : lay_rows_sse2<Arguments...>;
    lay(arguments...);
}

// Lays the rows of one plane, or of the front plane and the back plane, over those of the destination.
template <class Rule, class Destination, class... Source>
void lay_rows(std::int32_t height, std::int32_t width, Rule rule, const Destination& d, const Source&... s) {
    lay_rows_in_vectors(height, width, rule, d, s...);
}

// Pixels that are only copied are bytes at every depth, so one loop serves them all. A call of memcpy pays on
// long rows only: on rows of 320 bytes it doubles the time.
template <class Pixel>
void lay_rows(std::int32_t height, std::int32_t width, Copy<Pixel>, const DestinationRows<Pixel>& d,
              const PlaneRows<Pixel>& s) {
    constexpr std::size_t longest_short_row = 1280;
    const std::size_t bytes = static_cast<std::size_t>(width) * sizeof(Pixel);
    if (bytes > longest_short_row) {
        for (std::int32_t row = 0; row < height; ++row) std::memcpy(d[row], s[row], bytes);
    } else {
        lay_rows_in_vectors(height, static_cast<std::int32_t>(bytes), Copy<std::uint8_t>{}, d.in_bytes(),
                            s.in_bytes());
    }
}

}  // namespace scroll2d
