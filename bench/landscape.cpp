#include <algorithm>
#include <cmath>

#include "bench/pictures.h"

namespace bench {
namespace {

std::uint32_t scramble(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9e3779b1U ^
                      static_cast<std::uint32_t>(y) * 0x85ebca77U ^ seed * 0xc2b2ae3dU;
    h = (h ^ h >> 15) * 0x2c1b3c6dU;
    h = (h ^ h >> 12) * 0x297a2d39U;
    return h ^ h >> 15;
}

float random_unit(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    return static_cast<float>(scramble(x, y, seed) >> 8) / 16777216.0F;
}

// Value noise, 0 to 1, with features of `cell` pixels.
float noise(std::int32_t x, std::int32_t y, std::int32_t cell, std::uint32_t seed) {
    const std::int32_t cx = x / cell, cy = y / cell;
    const auto ease = [cell](std::int32_t part) {
        const float t = static_cast<float>(part) / static_cast<float>(cell);
        return t * t * (3 - 2 * t);
    };
    const float tx = ease(x % cell), ty = ease(y % cell);
    const float top = std::lerp(random_unit(cx, cy, seed), random_unit(cx + 1, cy, seed), tx);
    const float bottom = std::lerp(random_unit(cx, cy + 1, seed), random_unit(cx + 1, cy + 1, seed), tx);
    return std::lerp(top, bottom, ty);
}

// A colour with grain. No channel is 0, so that a picture without alpha has no opaque pixel of value 0.
host::Rgba shade(float r, float g, float b, float opacity, std::int32_t x, std::int32_t y) {
    const float grain = (random_unit(x, y, 7) - 0.5F) * 14;
    const auto channel = [grain](float value) {
        return static_cast<std::uint8_t>(std::clamp(value + grain, 8.0F, 255.0F));
    };
    return {channel(r), channel(g), channel(b),
            static_cast<std::uint8_t>(std::clamp(opacity, 0.0F, 1.0F) * 255.0F + 0.5F)};
}

template <class Colour>
host::Image paint(Size size, Colour colour) {
    host::Image image{size.width, size.height, {}};
    image.pixels.reserve(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    for (std::int32_t y = 0; y < size.height; ++y) {
        for (std::int32_t x = 0; x < size.width; ++x) {
            const host::Rgba c = colour(x, y);
            image.pixels.push_back(c.a == 0 ? host::Rgba{0, 0, 0, 0} : c);
        }
    }
    return image;
}

// The height of a ridge above the picture's foot, in pixels.
float ridge(std::int32_t x, float mean, float swing, std::uint32_t seed) {
    return mean + swing * (noise(x, 0, 160, seed) - 0.5F) + swing / 4 * (noise(x, 0, 23, seed) - 0.5F);
}

// How far inside a crown of leaves a point lies, in pixels; below 0 outside all crowns. One tree a cell.
float inside_crown(std::int32_t x, std::int32_t y, std::int32_t height, float& trunk) {
    constexpr std::int32_t cell = 110;
    float deepest = -1000;
    for (std::int32_t c = std::max(0, x / cell - 1); c <= x / cell + 1; ++c) {
        if (random_unit(c, 0, 31) < 0.3F) continue;
        const float middle = static_cast<float>(c * cell) + 20 + 70 * random_unit(c, 1, 31);
        const float top = static_cast<float>(height) * (0.25F + 0.3F * random_unit(c, 2, 31));
        const float radius = 28 + 34 * random_unit(c, 3, 31);
        const float dx = static_cast<float>(x) - middle, dy = static_cast<float>(y) - top;
        deepest = std::max(deepest, radius + 16 * noise(x, y, 9, 33) - std::sqrt(dx * dx + dy * dy));
        if (dy > 0) trunk = std::max(trunk, 6 - std::abs(dx));
    }
    return deepest;
}

}  // namespace

host::Image paint_sky(Size size) {
    return paint(size, [size](std::int32_t x, std::int32_t y) {
        const float depth = static_cast<float>(y) / static_cast<float>(size.height);
        const float cloud = std::max(0.0F, noise(x, y * 2, 120, 1) + noise(x, y * 2, 40, 2) / 2 - 0.8F) * 160;
        return shade(80 + 110 * depth + cloud, 130 + 80 * depth + cloud, 225 + cloud / 4, 1, x, y);
    });
}

host::Image paint_hills(Size size) {
    return paint(size, [size](std::int32_t x, std::int32_t y) {
        const float above = static_cast<float>(size.height - y);
        const auto height = static_cast<float>(size.height);
        const float edge = ridge(x, height * 0.55F, height * 0.3F, 11) - above;
        if (edge > 0) {
            const float light = 60 * noise(x, y, 17, 12) + 50 * above / height;
            return shade(60 + light, 90 + light, 70 + light / 2, edge / 3, x, y);
        }
        const float cloud = (noise(x, y * 2, 130, 13) + noise(x, y * 2, 31, 14) / 3 - 0.78F) * 4;
        return shade(230, 235, 245, cloud, x, y);
    });
}

host::Image paint_woods(Size size) {
    return paint(size, [size](std::int32_t x, std::int32_t y) {
        const float above = static_cast<float>(size.height - y);
        const auto height = static_cast<float>(size.height);
        const float ground = ridge(x, height * 0.18F, height * 0.08F, 21) - above;
        const float grain = 50 * noise(x, y, 6, 22);
        if (ground > 0) return shade(70 + grain, 60 + grain, 35 + grain / 2, ground / 2, x, y);
        float trunk = 0;
        const float crown = inside_crown(x, y, size.height, trunk);
        if (crown > 0) return shade(30 + grain, 85 + grain, 30 + grain / 2, crown / 5, x, y);
        if (trunk > 0) return shade(85 + grain / 2, 60 + grain / 2, 40, trunk / 1.5F, x, y);
        const float mist = (noise(x, y * 3, 140, 23) - 0.62F) * 1.6F;
        return shade(200, 210, 215, mist, x, y);
    });
}

Pictures paint_landscape(Size size) {
    return {paint_sky(size), paint_hills(size), paint_woods(size)};
}

}  // namespace bench
