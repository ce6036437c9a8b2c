// Drawing planes: which rule a case asks for, and its rows laid over the view.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"
#include "module/render/pixel_rules.h"
#include "module/render/rows.h"
#include "module/state/plane.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

// Lays one plane over the view.
template <class Pixel, class Rule>
void draw_rows(const ScrollRecord& r, const ConstPlane& plane, Rule rule) {
    lay_rows(r.height, r.width, rule, DestinationRows<Pixel>(r), PlaneRows<Pixel>(r, plane));
}

// Lays the back plane and the front plane over the view, both in one pass: what lies in the caches is read
// and written once. Each plane wraps at its own row.
template <class Pixel, class Front, class Back>
void draw_rows(const ScrollRecord& r, const ConstPlane& front, Front front_rule, const ConstPlane& back,
               Back back_rule) {
    lay_rows(r.height, r.width, Stacked<Front, Back>{front_rule, back_rule}, DestinationRows<Pixel>(r),
             PlaneRows<Pixel>(r, front), PlaneRows<Pixel>(r, back));
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
    const ConstPlane front(r, 1);
    with_rule<Pixel, Rules>(front.map_alpha_flag(), r.alpha,
                            [&](auto rule) { draw_rows<Pixel>(r, front, rule); });
}

// Draws plane 2 alone. The scroll's alpha does not reach it.
template <class Pixel, template <class> class Rules>
void draw_back_plane() {
    const ScrollRecord& r = *pscroll;
    const ConstPlane back(r, 2);
    with_rule<Pixel, Rules>(back.map_alpha_flag(), [&](auto rule) { draw_rows<Pixel>(r, back, rule); });
}

// Draws both planes, the front plane keyed. The scroll's alpha reaches the front plane only.
template <class Pixel, template <class> class BackRules>
void draw_both_planes() {
    const ScrollRecord& r = *pscroll;
    const ConstPlane front(r, 1);
    const ConstPlane back(r, 2);
    with_rule<Pixel, BackRules>(back.map_alpha_flag(), [&](auto back_rule) {
        with_rule<Pixel, KeyedRules>(front.map_alpha_flag(), r.alpha, [&](auto front_rule) {
            draw_rows<Pixel>(r, front, front_rule, back, back_rule);
        });
    });
}

}  // namespace scroll2d
