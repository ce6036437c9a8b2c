// Drawing planes row by row: where a row lies, how rules are laid over it, and which rule a case asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/host_records.h"
#include "render/pixel_rules.h"
#include "scroll/scroll_table.h"

// One build of a row loop for each of these vector units; the loader picks by the processor. Everything that
// the loop calls is inlined into it, so that it becomes vector code of that unit as a whole. What runs for a
// few pixels only is built once, and small.
#if defined(__OPTIMIZE__) && !defined(__clang__)  // clang refuses target_clones beside flatten
#define SCROLL2D_VECTOR_BUILDS __attribute__((target_clones("avx2", "sse4.1", "default"), flatten, noinline))
#define SCROLL2D_SMALL_BUILD __attribute__((optimize("O2"), noinline))
#else
#define SCROLL2D_VECTOR_BUILDS
#define SCROLL2D_SMALL_BUILD
#endif

namespace scroll2d {

// The rows of a plane's picture, by the reading rule of buffer/buffer.h.
template <class Pixel>
class PlaneRows {
  public:
    PlaneRows(const ScrollRecord& r, const Plane& plane)
        : start_(reinterpret_cast<const Pixel*>(plane.start)),
          width_(r.width),
          ring_size_(r.ring_size),
          rows_to_wrap_(plane.rows_to_wrap) {}
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
    Pixel* operator[](std::int32_t row) const { return origin_ + row * width_; }

  private:
    Pixel* origin_;
    std::ptrdiff_t width_;
};

// Pixels of a group: what the widest vector register holds.
template <class Pixel>
constexpr std::int32_t group = 32 / sizeof(Pixel);

// A row narrower than a group.
template <class Pixel, class Rule, class... Source>
SCROLL2D_SMALL_BUILD void lay_narrow_row(Pixel* d, std::int32_t width, Rule rule, const Source*... s) {
    for (std::int32_t i = 0; i < width; ++i) d[i] = rule(d[i], s[i]...);
}

// Lays a row of one plane, or one of the front plane and one of the back plane, over a row of the
// destination. They never overlap: buffers are the module's own. The loop takes whole groups, which leaves
// the compiler no pixels to go through one by one. The pixels that are left at the end are laid as part of a
// last group that reaches back into the one before, on a copy made before any pixel was laid.
template <class Pixel, class Rule, class... Source>
SCROLL2D_VECTOR_BUILDS void lay_row(Pixel* __restrict d, std::int32_t width, Rule rule,
                                    const Source* __restrict... s) {
    if (width < group<Pixel>) return lay_narrow_row(d, width, rule, s...);
    const std::int32_t whole = width & -group<Pixel>;
    const std::int32_t last = width - group<Pixel>;
    Pixel last_group[group<Pixel>];
    if (whole != width) std::memcpy(last_group, d + last, sizeof last_group);
#pragma GCC unroll 2
    for (std::int32_t i = 0; i < whole; ++i) d[i] = rule(d[i], s[i]...);
    if (whole == width) return;
    lay_row(last_group, group<Pixel>, rule, s + last...);
    std::memcpy(d + last, last_group, sizeof last_group);
}

template <class Pixel>
void lay_row(Pixel* __restrict d, std::int32_t width, Copy<Pixel>, const Pixel* __restrict s) {
    std::memcpy(d, s, static_cast<std::size_t>(width) * sizeof(Pixel));
}

// Lays one plane over the view.
template <class Pixel, class Rule>
void draw_rows(const ScrollRecord& r, const Plane& plane, Rule rule) {
    const PlaneRows<Pixel> source(r, plane);
    const DestinationRows<Pixel> destination(r);
    for (std::int32_t row = 0; row < r.height; ++row) lay_row(destination[row], r.width, rule, source[row]);
}

// Lays the back plane and the front plane over the view, both in one pass: what lies in the caches is read
// and written once. Each plane wraps at its own row.
template <class Pixel, class Front, class Back>
void draw_rows(const ScrollRecord& r, const Plane& front, Front front_rule, const Plane& back,
               Back back_rule) {
    const PlaneRows<Pixel> front_rows(r, front);
    const PlaneRows<Pixel> back_rows(r, back);
    const DestinationRows<Pixel> destination(r);
    for (std::int32_t row = 0; row < r.height; ++row) {
        lay_row(destination[row], r.width, Stacked<Front, Back>{front_rule, back_rule}, front_rows[row],
                back_rows[row]);
    }
}

// What a depth knows: a scroll's alpha from 16 bits on, per-pixel alpha at 32.
template <class Pixel>
constexpr bool has_scroll_alpha = sizeof(Pixel) >= 2;
template <class Pixel>
constexpr bool has_pixel_alpha = sizeof(Pixel) == 4;

// Which rule a plane takes, by its coverage, its map's alpha flag (any nonzero flag counts as set) and the
// scroll's alpha:
//
//                                        scroll alpha 255                 scroll alpha below 255
//                                        no pixel alpha   pixel alpha     no pixel alpha   pixel alpha
//   opaque: covers its view              Copy             OverBlack       Blended          FadedAlphaOver
//   keyed: transparent pixels leave D    Keyed            AlphaOver       KeyedBlended     FadedAlphaOver
template <class Pixel>
struct OpaqueRules {
    using Plain = Copy<Pixel>;
    using PixelAlpha = OverBlack;
    using Faded = Blended<Pixel>;
};
template <class Pixel>
struct KeyedRules {
    using Plain = Keyed<Pixel>;
    using PixelAlpha = AlphaOver;
    using Faded = KeyedBlended<Pixel>;
};

// Calls `draw` with the rule for scroll alpha 255.
template <class Pixel, template <class> class Rules, class Draw>
void with_rule(std::int32_t alpha_flag, Draw draw) {
    if constexpr (has_pixel_alpha<Pixel>) {
        if (alpha_flag != 0) return draw(typename Rules<Pixel>::PixelAlpha{});
    }
    draw(typename Rules<Pixel>::Plain{});
}

// Calls `draw` with the rule for any scroll alpha, 0 to 255.
template <class Pixel, template <class> class Rules, class Draw>
void with_rule(std::int32_t alpha_flag, std::int32_t alpha, Draw draw) {
    if constexpr (has_scroll_alpha<Pixel>) {
        if (alpha != 255) {
            if constexpr (has_pixel_alpha<Pixel>) {
                if (alpha_flag != 0) return draw(FadedAlphaOver{static_cast<std::uint32_t>(alpha)});
            }
            return draw(typename Rules<Pixel>::Faded{static_cast<Pixel>(alpha)});
        }
    }
    with_rule<Pixel, Rules>(alpha_flag, draw);
}

// Draws plane 1 alone.
template <class Pixel, template <class> class Rules>
void draw_front_plane() {
    const ScrollRecord& r = *pscroll;
    const Plane front = plane_of(*pscroll, 1);
    with_rule<Pixel, Rules>(front.map_alpha_flag, r.alpha,
                            [&](auto rule) { draw_rows<Pixel>(r, front, rule); });
}

// Draws plane 2 alone. The scroll's alpha does not reach it.
template <class Pixel, template <class> class Rules>
void draw_back_plane() {
    const ScrollRecord& r = *pscroll;
    const Plane back = plane_of(*pscroll, 2);
    with_rule<Pixel, Rules>(back.map_alpha_flag, [&](auto rule) { draw_rows<Pixel>(r, back, rule); });
}

// Draws both planes, the front plane keyed. The scroll's alpha reaches the front plane only.
template <class Pixel, template <class> class BackRules>
void draw_both_planes() {
    const ScrollRecord& r = *pscroll;
    const Plane front = plane_of(*pscroll, 1);
    const Plane back = plane_of(*pscroll, 2);
    with_rule<Pixel, BackRules>(back.map_alpha_flag, [&](auto back_rule) {
        with_rule<Pixel, KeyedRules>(front.map_alpha_flag, r.alpha, [&](auto front_rule) {
            draw_rows<Pixel>(r, front, front_rule, back, back_rule);
        });
    });
}

}  // namespace scroll2d
