#include "module/render/calm.h"

namespace scroll2d {
namespace {

// 1 where none of the deciding bits is set, -1 where all are and that is a simple case too; otherwise 0.
template <class Pixel>
std::int32_t answer(const Cases& cases, Pixel pixel) {
    const auto bits = static_cast<Pixel>(cases.deciding);
    const std::int32_t none = (pixel & bits) == 0;
    const std::int32_t all = (pixel & bits) == bits;
    return none - (all & static_cast<std::int32_t>(cases.all_copies));
}

// Branch-free, since a broken picture is as hard to guess here as in the loops.
template <class Pixel>
bool calm(const Cases& cases, const Pixel* row, const Pixel* next, std::int32_t width) {
    if (asking != Asking::where_calm) return asking == Asking::always;
    constexpr std::int32_t line = line_bytes / static_cast<std::int32_t>(sizeof(Pixel));
    std::int32_t simple = 0;
    std::int32_t surprises = 0;
    std::int32_t before = answer(cases, row[0]);
    for (std::int32_t at = 0; at + line <= width; at += line) {
        const std::int32_t now = answer(cases, row[at]);
        const auto new_here = static_cast<std::int32_t>(now != before);
        const auto ends_here = static_cast<std::int32_t>(now != answer(cases, next[at]));
        simple += now & 1;
        surprises += new_here & ends_here;
        before = now;
    }
    return 2 * simple > cases.lines_a_surprise * (2 * surprises + 1);
}

}  // namespace

Asking asking = Asking::where_calm;

bool is_calm(const Cases& cases, const std::uint16_t* row, const std::uint16_t* next, std::int32_t width) {
    return calm(cases, row, next, width);
}
bool is_calm(const Cases& cases, const std::uint32_t* row, const std::uint32_t* next, std::int32_t width) {
    return calm(cases, row, next, width);
}

}  // namespace scroll2d
