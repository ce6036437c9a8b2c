// Drawing planes row by row: where a row lies, how rules are laid over it, and which rule a case asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/host_records.h"
#include "render/pixel_rules.h"
#include "scroll/scroll_table.h"

// One build of a row loop for each of these vector units; the loader picks by the processor. Everything that
// the loop calls is inlined into it, so that it becomes vector code of that unit as a whole.
#if defined(__OPTIMIZE__) && !defined(__clang__)  // clang refuses target_clones beside flatten
#define SCROLL2D_VECTOR_BUILDS __attribute__((target_clones("avx2", "sse4.1", "default"), flatten, noinline))
#else
#define SCROLL2D_VECTOR_BUILDS
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

// Lays a row of a plane over a row of the destination. The two never overlap: buffers are the module's own.
template <class Pixel, class Rule>
SCROLL2D_VECTOR_BUILDS void lay_row(Pixel* __restrict d, const Pixel* __restrict s, std::int32_t width,
                                    Rule rule) {
    for (std::int32_t i = 0; i < width; ++i) d[i] = rule(d[i], s[i]);
}

template <class Pixel>
void lay_row(Pixel* __restrict d, const Pixel* __restrict s, std::int32_t width, Copy<Pixel>) {
    std::memcpy(d, s, static_cast<std::size_t>(width) * sizeof(Pixel));
}

// Lays a row of the back plane and a row of the front plane over the destination in one pass.
template <class Pixel, class Rule>
SCROLL2D_VECTOR_BUILDS void lay_row(Pixel* __restrict d, const Pixel* __restrict f, const Pixel* __restrict b,
                                    std::int32_t width, Rule rule) {
    for (std::int32_t i = 0; i < width; ++i) d[i] = rule(d[i], f[i], b[i]);
}

// Lays one plane over the view.
template <class Pixel, class Rule>
void draw_rows(const ScrollRecord& r, const Plane& plane, Rule rule) {
    const PlaneRows<Pixel> source(r, plane);
    const DestinationRows<Pixel> destination(r);
    for (std::int32_t row = 0; row < r.height; ++row) lay_row(destination[row], source[row], r.width, rule);
}

// Lays the back plane and the front plane over the view; each wraps at its own row.
template <class Pixel, class Rule>
void draw_rows(const ScrollRecord& r, const Plane& front, const Plane& back, Rule rule) {
    const PlaneRows<Pixel> front_rows(r, front);
    const PlaneRows<Pixel> back_rows(r, back);
    const DestinationRows<Pixel> destination(r);
    for (std::int32_t row = 0; row < r.height; ++row) {
        lay_row(destination[row], front_rows[row], back_rows[row], r.width, rule);
    }
}

// What a depth knows: a scroll's alpha from 16 bits on, per-pixel alpha at 32.
template <class Pixel>
constexpr bool has_scroll_alpha = sizeof(Pixel) >= 2;
template <class Pixel>
constexpr bool has_pixel_alpha = sizeof(Pixel) == 4;

enum class Coverage {
    opaque,  // the plane covers its view
    keyed,   // its transparent pixels leave the destination
};

// The rule for one plane by its coverage and its map's alpha flag (any nonzero flag counts as set):
//
//              no pixel alpha   pixel alpha
//   opaque     Copy             OverBlack
//   keyed      Keyed            AlphaOver
//
// Both call `draw` with that rule.
template <class Pixel, class Draw>
void with_opaque_rule(std::int32_t alpha_flag, Draw draw) {
    if constexpr (has_pixel_alpha<Pixel>) {
        if (alpha_flag != 0) return draw(OverBlack{});
    }
    draw(Copy<Pixel>{});
}
template <class Pixel, class Draw>
void with_keyed_rule(std::int32_t alpha_flag, Draw draw) {
    if constexpr (has_pixel_alpha<Pixel>) {
        if (alpha_flag != 0) return draw(AlphaOver{});
    }
    draw(Keyed<Pixel>{});
}
template <class Pixel, class Draw>
void with_plane_rule(Coverage coverage, std::int32_t alpha_flag, Draw draw) {
    coverage == Coverage::opaque ? with_opaque_rule<Pixel>(alpha_flag, draw)
                                 : with_keyed_rule<Pixel>(alpha_flag, draw);
}

// Draws one plane alone. With the scroll's alpha below 255, at the depths that know it, the rule is
//
//              no pixel alpha   pixel alpha
//   opaque     Blended          FadedAlphaOver
//   keyed      KeyedBlended     FadedAlphaOver
template <class Pixel>
void draw_plane(std::int32_t number, Coverage coverage, std::int32_t alpha) {
    const ScrollRecord& r = *pscroll;
    const Plane plane = plane_of(*pscroll, number);
    const auto draw = [&](auto rule) { draw_rows<Pixel>(r, plane, rule); };
    if constexpr (has_scroll_alpha<Pixel>) {
        if (alpha != 255) {
            if constexpr (has_pixel_alpha<Pixel>) {
                if (plane.map_alpha_flag != 0) return draw(FadedAlphaOver{static_cast<std::uint32_t>(alpha)});
            }
            const auto f = static_cast<Pixel>(alpha);
            return coverage == Coverage::opaque ? draw(Blended<Pixel>{f}) : draw(KeyedBlended<Pixel>{f});
        }
    }
    with_plane_rule<Pixel>(coverage, plane.map_alpha_flag, draw);
}

}  // namespace scroll2d
