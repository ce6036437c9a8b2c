#include "host/sprites.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "host/depth.h"
#include "host/sprite_rules.h"

namespace host {

namespace {

// ---- Where: from destination pixels back to source pixels

struct Rect {
    std::int64_t x, y, x2, y2;  // inclusive edges; empty when an x2 is below its x
};

struct Vector {
    double x, y;
};

bool is_mirrored(const __RVKBlit2D__& blit) {
    return (blit.flags & 1) != 0;
}
bool is_upside_down(const __RVKBlit2D__& blit) {
    return (blit.flags & 2) != 0;
}

// The map (dx, dy) -> (u, v), both counted from pixel centre to pixel centre: the destination from the
// position, the source from the anchor. It inverts: mirror, scale, turn counter-clockwise on a screen whose y
// grows downwards.
struct InverseMap {
    Vector u_step, v_step;  // what a destination pixel to the right (x) and down (y) adds to u and v
    Vector scale{1, 1};     // 1 = unscaled
    double cosine = 1, sine = 0;

    InverseMap(const __RVKBlit2D__& blit, SpriteNeeds needs) {
        if (needs.rotated) {
            const double angle = blit.angle * (std::numbers::pi / 180000);
            cosine = std::cos(angle);
            sine = std::sin(angle);
        }
        if (needs.scaled) {
            const double size = blit.size / 100.0;
            scale = {size * blit.size_x / 100.0, size * blit.size_y / 100.0};
            if (blit.size <= 0) scale = {0, 0};
        }
        const double u = (is_mirrored(blit) ? -1 : 1) / scale.x;
        const double v = (is_upside_down(blit) ? -1 : 1) / scale.y;
        u_step = {cosine * u, -sine * u};
        v_step = {sine * v, cosine * v};
    }

    [[nodiscard]] bool visible() const { return scale.x > 0 && scale.y > 0; }
    [[nodiscard]] bool upright() const { return cosine == 1 && sine == 0; }
    [[nodiscard]] bool unscaled() const { return scale.x == 1 && scale.y == 1; }
    // Half the sides of a box around the turned and scaled rectangle that reaches (w, h) from its centre.
    [[nodiscard]] Vector reach(double w, double h) const {
        const double across = w * scale.x;
        const double down = h * scale.y;
        return {std::abs(cosine) * across + std::abs(sine) * down,
                std::abs(sine) * across + std::abs(cosine) * down};
    }
};

__RVKPoint2D__ anchor_of(const MapRecord& map) {
    if (map.cpoint_count > 0 && map.cpoints != nullptr) return map.cpoints[0];
    return {map.width / 2, map.height / 2};
}

Rect cut(const Rect& a, const Rect& b) {
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::min(a.x2, b.x2), std::min(a.y2, b.y2)};
}

// The part of a box that lies on the target and in the clip rectangle.
Rect clipped(const Rect& box, const __RVKBlit2D__& blit) {
    const Rect target{0, 0, std::int64_t{blit.target->width} - 1, std::int64_t{blit.target->height} - 1};
    const Rect clip{blit.clip_x, blit.clip_y, blit.clip_x2, blit.clip_y2};
    return cut(box, blit.has_clip != 0 ? cut(target, clip) : target);
}

// The destination pixels that the sprite can touch at all. The anchor may lie outside the graphic: the box is
// the one around everything that is not farther from the anchor than the farthest edge.
Rect reachable(const __RVKBlit2D__& blit, const InverseMap& map, __RVKPoint2D__ anchor) {
    const double ax = anchor.x;
    const double ay = anchor.y;
    const Vector reach = map.reach(std::max(std::abs(ax), std::abs(blit.bitmap->width - ax)) + 1,
                                   std::max(std::abs(ay), std::abs(blit.bitmap->height - ay)) + 1);
    const auto whole = [](double v) { return static_cast<std::int64_t>(std::ceil(std::min(v, 1e12))); };
    return clipped({blit.pos_x - whole(reach.x), blit.pos_y - whole(reach.y), blit.pos_x + whole(reach.x),
                    blit.pos_y + whole(reach.y)},
                   blit);
}

// Source positions run in units of 1/65536 pixel, so that a row is additions and shifts.
constexpr int fraction_bits = 16;
constexpr double fixed_one = 1 << fraction_bits;

// The steps i with first <= i < end, of those from 0 to count - 1, at which start + i * step lies within
// `size` pixels of the source.
struct Steps {
    std::int64_t first, end;

    Steps(std::int64_t start, std::int64_t step, std::int32_t size, std::int64_t count) {
        const std::int64_t limit = std::int64_t{size} << fraction_bits;
        if (step == 0) {
            first = 0;
            end = start >= 0 && start < limit ? count : 0;
            return;
        }
        // How far the edge lies by which the steps come in; the other one is that much farther.
        const std::int64_t way = step > 0 ? -start : start - limit + 1;
        first = steps_of(std::abs(step), way);
        end = std::min(count, steps_of(std::abs(step), way + limit));
    }

  private:
    static std::int64_t steps_of(std::int64_t length, std::int64_t way) {
        return way <= 0 ? 0 : (way - 1) / length + 1;
    }
};

// ---- Source pixels in the order in which a row of the destination shows them

// A position in the source along one of its axes. 32 bits carry it wherever Steps lets it go; one step
// farther it is not looked at any more.
struct Walk {
    std::uint32_t whole, fraction;  // pixels, and 1/65536 of one
    std::uint32_t whole_step, fraction_step;

    Walk(std::int64_t start, std::int64_t step)
        : whole(static_cast<std::uint32_t>(start >> fraction_bits)),
          fraction(static_cast<std::uint32_t>(start) & fraction_mask),
          whole_step(static_cast<std::uint32_t>(step >> fraction_bits)),
          fraction_step(static_cast<std::uint32_t>(step) & fraction_mask) {}

    void go_on() {
        fraction += fraction_step;
        whole += whole_step + (fraction >> fraction_bits);
        fraction &= fraction_mask;
    }

  private:
    static constexpr std::uint32_t fraction_mask = (1U << fraction_bits) - 1;
};

template <class Pixel>
struct Backwards {
    const Pixel* at;
    Pixel next() { return *at--; }
};

template <class Pixel>
struct AlongRow {
    const Pixel* row;
    Walk column;
    Pixel next() {
        const Pixel pixel = row[column.whole];
        column.go_on();
        return pixel;
    }
};

template <class Pixel>
struct Across {
    const Pixel* pixels;
    std::uint32_t width;
    Walk column, line;
    Pixel next() {
        const Pixel pixel = pixels[line.whole * width + column.whole];
        column.go_on();
        line.go_on();
        return pixel;
    }
};

// ---- Loops

template <class Pixel, class Rule>
void lay(Pixel* __restrict d, const Pixel* __restrict s, std::int32_t count, std::int32_t place, Rule rule) {
    for (std::int32_t i = 0; i < count; ++i) d[i] = rule(d[i], s[i], place ^ i);
}

// By a rule that names the bits that decide. On pictures without calm parts the question costs up to a
// sixth, on others it saves up to nine tenths. Unrolled before they become vectors, these loops would not
// become any.
template <class Pixel, class Rule>
requires requires {
    Rule::deciding;
}
void lay(Pixel* __restrict d, const Pixel* __restrict s, std::int32_t count, std::int32_t place, Rule rule) {
    constexpr std::int32_t group = 8;
    std::int32_t at = 0;
    for (; at + group <= count; at += group) {
        Pixel any = 0;
        Pixel every = Rule::deciding;
#pragma GCC unroll 1
        for (std::int32_t i = at; i < at + group; ++i) {
            any |= s[i];
            every &= s[i];
        }
        if ((any & Rule::deciding) == 0) continue;
        if (Rule::all_copies && every == Rule::deciding) {
#pragma GCC unroll 1
            for (std::int32_t i = at; i < at + group; ++i) d[i] = rule.ink(s[i]);
        } else {
#pragma GCC unroll 1
            for (std::int32_t i = at; i < at + group; ++i) d[i] = rule(d[i], s[i], place ^ i);
        }
    }
    for (; at < count; ++at) d[at] = rule(d[at], s[at], place ^ at);
}

// Pixels that do not lie side by side are collected first, so many at a time.
constexpr std::int32_t longest_run = 256;

template <class Pixel, class Source, class Rule>
void collect_and_lay(Pixel* d, Source source, std::int32_t count, std::int32_t place, std::int32_t run,
                     Rule rule) {
    std::array<Pixel, longest_run> collected;
    for (std::int32_t at = 0; at < count; at += run) {
        const std::int32_t length = std::min(run, count - at);
        for (std::int32_t i = 0; i < length; ++i) collected[static_cast<std::size_t>(i)] = source.next();
        lay(d + at, collected.data(), length, place ^ at, rule);
    }
}

// ---- Sprites

template <class Pixel>
struct Rows {
    explicit Rows(const MapRecord& map) : pixels(static_cast<Pixel*>(map.pixels)), width(map.width) {}
    Pixel* operator[](std::int64_t row) const { return pixels + row * width; }

    Pixel* pixels;
    std::int64_t width;
};

// The bit that counts in a rule's `place`.
std::int32_t place_of(std::int64_t x, std::int64_t y) {
    return static_cast<std::int32_t>((x ^ y) & 1);
}

bool overlap(const MapRecord& a, const MapRecord& b, std::int32_t pixel_bytes) {
    const auto first = [](const MapRecord& map) { return reinterpret_cast<std::uintptr_t>(map.pixels); };
    const auto end = [&](const MapRecord& map) {
        return first(map) + std::int64_t{map.width} * map.height * pixel_bytes;
    };
    return first(a) < end(b) && first(b) < end(a);
}

// Pixel for pixel, upright: rectangle upon rectangle.
template <class Pixel, class Rule>
void draw_straight(const __RVKBlit2D__& blit, Rule rule) {
    const MapRecord& from = *blit.bitmap;
    const __RVKPoint2D__ anchor = anchor_of(from);
    // Where pixel 0 would land, and in which direction the others follow.
    const bool mirrored = is_mirrored(blit);
    const bool upside_down = is_upside_down(blit);
    const std::int64_t x = std::int64_t{blit.pos_x} + (mirrored ? anchor.x : -std::int64_t{anchor.x});
    const std::int64_t y = std::int64_t{blit.pos_y} + (upside_down ? anchor.y : -std::int64_t{anchor.y});
    const std::int64_t across = from.width - 1;
    const std::int64_t down = from.height - 1;
    const Rect area = clipped({mirrored ? x - across : x, upside_down ? y - down : y,
                               mirrored ? x : x + across, upside_down ? y : y + down},
                              blit);
    if (area.x > area.x2) return;
    const auto count = static_cast<std::int32_t>(area.x2 - area.x + 1);
    const Rows<const Pixel> source(from);
    const Rows<Pixel> target(*blit.target);
    for (std::int64_t row = area.y; row <= area.y2; ++row) {
        const Pixel* line = source[upside_down ? y - row : row - y];
        Pixel* d = target[row] + area.x;
        if (mirrored)
            collect_and_lay(d, Backwards<Pixel>{line + (x - area.x)}, count, place_of(area.x, row),
                            longest_run, rule);
        else
            lay(d, line + (area.x - x), count, place_of(area.x, row), rule);
    }
}

// Any other way. A graphic that is drawn onto itself is read pixel by pixel, as it is then.
template <class Pixel, class Rule>
void draw_mapped(const __RVKBlit2D__& blit, const InverseMap& map, bool onto_itself, Rule rule) {
    const MapRecord& from = *blit.bitmap;
    const __RVKPoint2D__ anchor = anchor_of(from);
    const Rect area = reachable(blit, map, anchor);
    const std::int64_t count = area.x2 - area.x + 1;
    const std::int64_t u_step = std::llround(map.u_step.x * fixed_one);
    const std::int64_t v_step = std::llround(map.v_step.x * fixed_one);
    const std::int32_t run = onto_itself ? 1 : longest_run;
    const Rows<const Pixel> source(from);
    const Rows<Pixel> target(*blit.target);
    for (std::int64_t y = area.y; y <= area.y2; ++y) {
        const auto dx = static_cast<double>(area.x - blit.pos_x);
        const auto dy = static_cast<double>(y - blit.pos_y);
        const std::int64_t u =
            std::llround((anchor.x + 0.5 + dx * map.u_step.x + dy * map.u_step.y) * fixed_one);
        const std::int64_t v =
            std::llround((anchor.y + 0.5 + dx * map.v_step.x + dy * map.v_step.y) * fixed_one);
        const Steps columns(u, u_step, from.width, count);
        const Steps lines(v, v_step, from.height, count);
        const std::int64_t first = std::max(columns.first, lines.first);
        const std::int64_t end = std::min(columns.end, lines.end);
        if (first >= end) continue;
        const auto length = static_cast<std::int32_t>(end - first);
        Pixel* d = target[y] + area.x + first;
        const std::int32_t place = place_of(area.x + first, y);
        const Walk column(u + first * u_step, u_step);
        if (v_step == 0)
            collect_and_lay(d, AlongRow<Pixel>{source[v >> fraction_bits], column}, length, place, run, rule);
        else
            collect_and_lay(d,
                            Across<Pixel>{source.pixels, static_cast<std::uint32_t>(from.width), column,
                                          Walk(v + first * v_step, v_step)},
                            length, place, run, rule);
    }
}

// ---- What: the rule that an entry asks for

template <class Pixel, class Draw>
void with_rule(const __RVKBlit2D__& blit, bool general, Draw draw) {
    const int opacity = general ? 255 - std::clamp(blit.word25, 0, 255) : 255;
    Ink<Pixel> ink;
    if (general && blit.word26 != 0) ink = {0, static_cast<Pixel>(blit.word26)};
    if (opacity == 0) return;
    if constexpr (sizeof(Pixel) == 4) {
        if (ink.kept == 0) ink.silhouette |= 0xFF000000U;
        const bool alpha = blit.bitmap->alpha_flag != 0;
        if (alpha && opacity == 255) return draw(AlphaMixed{ink});
        if (alpha) return draw(FadedAlphaMixed{ink, static_cast<Pixel>(opacity)});
    }
    if constexpr (sizeof(Pixel) == 1) {
        if (opacity < 128) return draw(Chequered<Pixel>{ink});
    } else {
        if (opacity < 255) return draw(Mixed<Pixel>{ink, static_cast<Pixel>(opacity)});
    }
    draw(Keyed<Pixel>{ink});
}

template <class Pixel>
void draw(const __RVKBlit2D__& blit, SpriteNeeds needs) {
    const InverseMap map(blit, needs);
    if (!map.visible()) return;
    const bool onto_itself = overlap(*blit.bitmap, *blit.target, sizeof(Pixel));
    with_rule<Pixel>(blit, needs.general, [&](auto rule) {
        if (map.upright() && map.unscaled() && !onto_itself)
            draw_straight<Pixel>(blit, rule);
        else
            draw_mapped<Pixel>(blit, map, onto_itself, rule);
    });
}

}  // namespace

std::int32_t draw_sprite(const __RVKBlit2D__& blit, SpriteNeeds needs, std::int32_t bits_per_pixel) {
    if (blit.bitmap == nullptr || blit.target == nullptr) return 0;
    if (blit.bitmap->pixels == nullptr || blit.target->pixels == nullptr) return 0;
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            draw<std::uint32_t>(blit, needs);
            break;
        case 2:
            draw<std::uint16_t>(blit, needs);
            break;
        default:
            draw<std::uint8_t>(blit, needs);
    }
    return 1;
}

BlitRoutine sprite_routine(const Graphics2DInterface& graphics, SpriteNeeds needs) {
    if (needs.general) return needs.rotated ? graphics.BlitSpriteRotatedGeneral : graphics.BlitSpriteGeneral;
    if (needs.rotated) return needs.scaled ? graphics.BlitSpriteRotatedScaled : graphics.BlitSpriteRotated;
    return needs.scaled ? graphics.BlitSpriteScaled : graphics.BlitSprite;
}

}  // namespace host
