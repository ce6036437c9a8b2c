#include "host/sprites.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "host/depth.h"

namespace host {

namespace {

// ---- What: the colour that a source pixel leaves on the destination

struct Ink {
    bool per_pixel_alpha = false;
    std::uint32_t opacity = 255;   // of the whole sprite
    std::uint32_t silhouette = 0;  // pixel value, 0: none
};

// (s * a + d * (255 - a) + 127) / 255
std::uint32_t mix(std::uint32_t d, std::uint32_t s, std::uint32_t a) {
    return (s * a + d * (255 - a) + 127) / 255;
}

std::uint32_t own_opacity(std::uint8_t s, const Ink&) {
    return s == 0 ? 0 : 255;
}
std::uint32_t own_opacity(std::uint16_t s, const Ink&) {
    return s == 0 ? 0 : 255;
}
std::uint32_t own_opacity(std::uint32_t s, const Ink& ink) {
    return ink.per_pixel_alpha ? s >> 24 : s == 0 ? 0 : 255;
}

// An 8-bit destination cannot hold a mixture: from half opacity down every other pixel is left out.
std::uint8_t blend(std::uint8_t d, std::uint8_t s, std::uint32_t a, bool odd) {
    return a < 128 && odd ? d : s;
}

std::uint16_t blend(std::uint16_t d, std::uint16_t s, std::uint32_t a, bool) {
    const auto field = [&](unsigned shift, std::uint32_t mask) {
        return mix(std::uint32_t{d} >> shift & mask, std::uint32_t{s} >> shift & mask, a) << shift;
    };
    return static_cast<std::uint16_t>(field(11, 31) | field(5, 63) | field(0, 31));
}

std::uint32_t blend(std::uint32_t d, std::uint32_t s, std::uint32_t a, bool) {
    std::uint32_t out = 0xFF000000U;
    for (unsigned shift = 0; shift < 24; shift += 8)
        out |= mix(d >> shift & 255, s >> shift & 255, a) << shift;
    return out;
}

template <class Pixel>
void put(Pixel& d, Pixel s, const Ink& ink, bool odd) {
    const std::uint32_t a = mix(0, own_opacity(s, ink), ink.opacity);
    if (a == 0) return;
    if (ink.silhouette != 0) s = static_cast<Pixel>(ink.silhouette);
    d = a == 255 ? s : blend(d, s, a, odd);
}

Ink ink_of(const __RVKBlit2D__& blit, bool general, std::int32_t bits_per_pixel) {
    Ink ink;
    ink.per_pixel_alpha = bits_per_pixel == 32 && blit.bitmap->alpha_flag != 0;
    if (!general) return ink;
    ink.opacity = static_cast<std::uint32_t>(255 - std::clamp(blit.word25, 0, 255));
    ink.silhouette = static_cast<std::uint32_t>(blit.word26);
    if (bits_per_pixel == 32 && ink.silhouette != 0) ink.silhouette |= 0xFF000000U;
    return ink;
}

// ---- Where: from destination pixels back to source pixels

struct Rect {
    std::int64_t x, y, x2, y2;  // inclusive edges; empty when an x2 is below its x
};

struct Vector {
    double x, y;
};

// The map (dx, dy) -> (u, v), both counted from pixel centre to pixel centre: the destination from the
// position, the source from the anchor. It inverts: mirror, scale, turn counter-clockwise on a screen whose y
// grows downwards.
struct InverseMap {
    Vector u_step, v_step;  // what a destination pixel to the right (x) and down (y) adds to u and v
    Vector scale;           // 1 = unscaled
    double cosine, sine;

    InverseMap(const __RVKBlit2D__& blit, SpriteNeeds needs) {
        const double angle = needs.rotated ? blit.angle * (std::numbers::pi / 180000) : 0;
        cosine = std::cos(angle);
        sine = std::sin(angle);
        const double size = needs.scaled ? blit.size / 100.0 : 1;
        scale = {needs.scaled ? size * blit.size_x / 100.0 : 1,
                 needs.scaled ? size * blit.size_y / 100.0 : 1};
        if (needs.scaled && blit.size <= 0) scale = {0, 0};
        const double u = ((blit.flags & 1) != 0 ? -1 : 1) / scale.x;
        const double v = ((blit.flags & 2) != 0 ? -1 : 1) / scale.y;
        u_step = {cosine * u, -sine * u};
        v_step = {sine * v, cosine * v};
    }

    [[nodiscard]] bool visible() const { return scale.x > 0 && scale.y > 0; }
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

// The destination pixels that the sprite can touch at all. The anchor may lie outside the graphic: the box is
// the one around everything that is not farther from the anchor than the farthest edge.
Rect reachable(const __RVKBlit2D__& blit, const InverseMap& map, __RVKPoint2D__ anchor) {
    const double ax = anchor.x;
    const double ay = anchor.y;
    const Vector reach = map.reach(std::max(std::abs(ax), std::abs(blit.bitmap->width - ax)) + 1,
                                   std::max(std::abs(ay), std::abs(blit.bitmap->height - ay)) + 1);
    const auto whole = [](double v) { return static_cast<std::int64_t>(std::ceil(std::min(v, 1e12))); };
    const Rect box{blit.pos_x - whole(reach.x), blit.pos_y - whole(reach.y), blit.pos_x + whole(reach.x),
                   blit.pos_y + whole(reach.y)};
    const Rect target{0, 0, std::int64_t{blit.target->width} - 1, std::int64_t{blit.target->height} - 1};
    const Rect clip{blit.clip_x, blit.clip_y, blit.clip_x2, blit.clip_y2};
    return cut(box, blit.has_clip != 0 ? cut(target, clip) : target);
}

// Source positions run in units of 1/65536 pixel, so that a row is additions and shifts.
constexpr double fixed_one = 65536;

template <class Pixel>
void draw_mapped(const __RVKBlit2D__& blit, const InverseMap& map, const Ink& ink) {
    const MapRecord& from = *blit.bitmap;
    const __RVKPoint2D__ anchor = anchor_of(from);
    const Rect area = reachable(blit, map, anchor);
    const auto* source = static_cast<const Pixel*>(from.pixels);
    const std::int64_t u_step = std::llround(map.u_step.x * fixed_one);
    const std::int64_t v_step = std::llround(map.v_step.x * fixed_one);
    for (std::int64_t y = area.y; y <= area.y2; ++y) {
        const auto dx = static_cast<double>(area.x - blit.pos_x);
        const auto dy = static_cast<double>(y - blit.pos_y);
        std::int64_t u = std::llround((anchor.x + 0.5 + dx * map.u_step.x + dy * map.u_step.y) * fixed_one);
        std::int64_t v = std::llround((anchor.y + 0.5 + dx * map.v_step.x + dy * map.v_step.y) * fixed_one);
        Pixel* row = static_cast<Pixel*>(blit.target->pixels) + y * blit.target->width;
        for (std::int64_t x = area.x; x <= area.x2; ++x, u += u_step, v += v_step) {
            const std::int64_t column = u >> 16;
            const std::int64_t line = v >> 16;
            if (column < 0 || line < 0 || column >= from.width || line >= from.height) continue;
            put(row[x], source[line * from.width + column], ink, ((x ^ y) & 1) != 0);
        }
    }
}

}  // namespace

std::int32_t draw_sprite(const __RVKBlit2D__& blit, SpriteNeeds needs, std::int32_t bits_per_pixel) {
    if (blit.bitmap == nullptr || blit.target == nullptr) return 0;
    if (blit.bitmap->pixels == nullptr || blit.target->pixels == nullptr) return 0;
    const InverseMap map(blit, needs);
    if (!map.visible()) return 1;
    const Ink ink = ink_of(blit, needs.general, bits_per_pixel);
    switch (bytes_per_pixel(bits_per_pixel)) {
        case 4:
            draw_mapped<std::uint32_t>(blit, map, ink);
            break;
        case 2:
            draw_mapped<std::uint16_t>(blit, map, ink);
            break;
        default:
            draw_mapped<std::uint8_t>(blit, map, ink);
    }
    return 1;
}

BlitRoutine sprite_routine(const Graphics2DInterface& graphics, SpriteNeeds needs) {
    if (needs.general) return needs.rotated ? graphics.BlitSpriteRotatedGeneral : graphics.BlitSpriteGeneral;
    if (needs.rotated) return needs.scaled ? graphics.BlitSpriteRotatedScaled : graphics.BlitSpriteRotated;
    return needs.scaled ? graphics.BlitSpriteScaled : graphics.BlitSprite;
}

}  // namespace host
