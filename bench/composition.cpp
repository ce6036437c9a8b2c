#include "bench/composition.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "module/contract/numbers.h"

namespace bench {
namespace {

using Value = std::int32_t;  // of one colour field, or a pixel as a 32-bit word

struct Field {
    int shift;
    Value mask;
};

// The colour fields of a pixel that can be blended.
std::span<const Field> fields(std::int32_t bits) {
    static constexpr Field at16[] = {{11, 31}, {5, 63}, {0, 31}};
    static constexpr Field at32[] = {{0, 255}, {8, 255}, {16, 255}};
    if (bits == 16) return at16;
    if (bits == 32) return at32;
    return {};
}

Value field_of(Value pixel, const Field& f) {
    return pixel >> f.shift & f.mask;
}

// S into D with factor f of 256; the shift floors. What is no colour field becomes 0.
Value mix(Value d, Value s, Value f, std::int32_t bits) {
    Value result = 0;
    for (const Field& field : fields(bits)) {
        const Value from = field_of(d, field);
        result |= (from + ((field_of(s, field) - from) * f >> 8)) << field.shift;
    }
    return result;
}

Value fade(Value s, Value f) {
    Value result = 0;
    for (const Field& field : fields(32)) result |= ((field_of(s, field) + 1) * f >> 8) << field.shift;
    return result;
}

Value alpha_of(Value pixel) {
    return pixel >> 24 & 255;
}

// A plane of a map with per-pixel alpha, under a scroll alpha below 255.
Value lay_faded(Value d, Value s, Value alpha) {
    const Value e = (alpha_of(s) + 1) * alpha >> 8;
    return e == 0 ? d : mix(d, s, e, 32);
}

Value lay_keyed(Value d, Value s, bool pixel_alpha) {
    if (!pixel_alpha) return s != 0 ? s : d;
    const Value a = alpha_of(s);
    if (a == 0) return d;
    return a == 255 ? s : mix(d, s, a, 32);
}

Value lay_opaque(Value s, bool pixel_alpha) {
    if (!pixel_alpha) return s;
    const Value a = alpha_of(s);
    if (a == 0) return 0;
    return a == 255 ? s : fade(s, a);
}

// The whole rule of a variant for one pixel: d on the screen, f of the front plane, b of the back plane.
Value lay(const Variant& v, std::int32_t bits, Value d, Value f, Value b) {
    const bool full = v.alpha == 255 || bits == 8;
    const bool front_opaque = v.planes == 1 && v.mode == 0;
    if (v.planes == 2) d = v.keyed() ? lay_keyed(d, b, v.back_alpha) : lay_opaque(b, v.back_alpha);
    if (!full && v.front_alpha) return lay_faded(d, f, v.alpha);
    if (!full) return front_opaque || f != 0 ? mix(d, f, v.alpha, bits) : d;
    return front_opaque ? lay_opaque(f, v.front_alpha) : lay_keyed(d, f, v.front_alpha);
}

Value load(std::span<const std::byte> from, std::size_t index, std::int32_t bits) {
    const auto size = static_cast<std::size_t>(bits / 8);
    Value value = 0;
    std::memcpy(&value, from.data() + index * size, size);
    return value;
}

// The pixel of an endlessly repeated map.
Value map_pixel(const host::Map& map, std::int32_t x, std::int32_t y) {
    const std::int32_t column = scroll2d::floor_mod(x, map.width());
    const std::int32_t row = scroll2d::floor_mod(y, map.height());
    return load(map.bytes(), static_cast<std::size_t>(row * map.width() + column), map.bits_per_pixel());
}

bool alike(Value a, Value b, std::int32_t bits, std::int32_t tolerance) {
    if (a == b) return true;
    if (tolerance == 0 || bits == 8) return false;
    for (const Field& field : fields(bits))
        if (std::abs(field_of(a, field) - field_of(b, field)) > tolerance) return false;
    return true;
}

// The screen after a scroll of this variant has been drawn at these positions over `before`.
std::vector<std::byte> compose(Stage& stage, const Variant& variant, Position front, Position back,
                               std::span<const std::byte> before) {
    const std::int32_t bits = stage.bits_per_pixel();
    const auto size = static_cast<std::size_t>(bits / 8);
    const host::Map& front_map = stage.front_map(variant);
    const host::Map* back_map = variant.planes == 2 ? &stage.back_map(variant) : nullptr;
    std::vector<std::byte> after(before.size());
    for (std::int32_t y = 0; y < stage.view().height; ++y) {
        for (std::int32_t x = 0; x < stage.view().width; ++x) {
            const auto index = static_cast<std::size_t>(y * stage.view().width + x);
            const Value f = map_pixel(front_map, front.x + x, front.y + y);
            const Value b = back_map != nullptr ? map_pixel(*back_map, back.x + x, back.y + y) : 0;
            const Value d = lay(variant, bits, load(before, index, bits), f, b);
            std::memcpy(after.data() + index * size, &d, size);
        }
    }
    return after;
}

// Empty when the screen is the expected picture; otherwise where the first difference lies, in words.
std::string difference(Stage& stage, std::span<const std::byte> expected, std::int32_t tolerance) {
    const std::int32_t bits = stage.bits_per_pixel();
    const std::span<const std::byte> shown = stage.screen();
    const std::size_t pixels = shown.size() / static_cast<std::size_t>(bits / 8);
    for (std::size_t i = 0; i < pixels; ++i) {
        const Value is = load(shown, i, bits), should_be = load(expected, i, bits);
        if (alike(is, should_be, bits, tolerance)) continue;
        const auto width = static_cast<std::size_t>(stage.view().width);
        char words[96];
        std::snprintf(words, sizeof words, "pixel (%zu, %zu) is %08x, should be %08x", i % width, i / width,
                      static_cast<unsigned>(is), static_cast<unsigned>(should_be));
        return words;
    }
    return {};
}

}  // namespace

std::vector<std::byte> check_frame(Stage& stage, Show& show, const Variant& variant, Position step,
                                   const std::string& what) {
    stage.lay_backdrop();
    const std::vector<std::byte> before(stage.screen().begin(), stage.screen().end());
    show.draw(step);
    auto expected = compose(stage, variant, show.front(), show.back(), before);
    expect_shown(stage, expected, 0, what);
    return expected;
}

void expect_shown(Stage& stage, std::span<const std::byte> expected, std::int32_t tolerance,
                  const std::string& what) {
    const std::string wrong = difference(stage, expected, tolerance);
    if (!wrong.empty()) throw std::runtime_error("wrong picture: " + what + ": " + wrong);
}

}  // namespace bench
