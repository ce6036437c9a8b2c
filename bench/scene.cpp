#include "bench/scene.h"

namespace bench {
namespace {

constexpr std::int32_t full = 255;
constexpr std::int32_t faded = 160;

// The variants with per-pixel alpha in the front plane, in the back plane, and in both.
std::vector<Variant> pixel_alpha_pairs(std::int32_t alpha, std::initializer_list<std::int32_t> modes) {
    std::vector<Variant> pairs;
    for (const std::int32_t mode : modes) {
        pairs.push_back({2, mode, alpha, true, false});
        pairs.push_back({2, mode, alpha, false, true});
        pairs.push_back({2, mode, alpha, true, true});
    }
    return pairs;
}

}  // namespace

const std::vector<Family>& families() {
    static const std::vector<Family> list{
        {"1 plane opaque", {8, 16, 32}, {{1, 0, full}}},
        {"1 plane keyed", {8, 16, 32}, {{1, 2, full}}},
        {"2 planes mode 0", {8, 16, 32}, {{2, 0, full}}},
        {"2 planes mode 2", {8, 16, 32}, {{2, 2, full}}},
        {"2 planes modes 1 and 3", {8, 16, 32}, {{2, 1, full}, {2, 3, full}}},
        {"1 plane scroll alpha", {16, 32}, {{1, 0, faded}, {1, 2, faded}}},
        {"2 planes scroll alpha", {16, 32}, {{2, 0, faded}, {2, 2, faded}}},
        {"1 plane pixel alpha, mode 0", {32}, {{1, 0, full, true}}},
        {"1 plane pixel alpha, mode 2", {32}, {{1, 2, full, true}}},
        {"2 planes pixel alpha, mode 0", {32}, pixel_alpha_pairs(full, {0})},
        {"2 planes pixel alpha, mode 2", {32}, pixel_alpha_pairs(full, {2})},
        {"2 planes pixel alpha, modes 1 and 3", {32}, pixel_alpha_pairs(full, {1, 3})},
        {"pixel and scroll alpha, 1 plane", {32}, {{1, 0, faded, true}, {1, 2, faded, true}}},
        {"pixel and scroll alpha, 2 planes", {32}, pixel_alpha_pairs(faded, {0, 2})},
    };
    return list;
}

std::string Variant::text() const {
    std::string words = "mode " + std::to_string(mode);
    if (alpha != full) words += ", alpha " + std::to_string(alpha);
    if (front_alpha) words += back_alpha ? ", pixel alpha in front and back" : ", pixel alpha in front";
    if (back_alpha && !front_alpha) words += ", pixel alpha in back";
    return words;
}

std::string text(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

}  // namespace bench
