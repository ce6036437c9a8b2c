// Rows of pixels laid over those of the view, by the best loop that there is for them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/render/calm.h"
#include "module/render/pixel_rules.h"
#include "module/render/plane_rows.h"
#include "module/render/vector_builds.h"
#include "module/render/vector_unit.h"

namespace scroll2d {

// Calls `lay` for each band of rows, with its first row and the one after its last.
template <class Lay>
void for_each_band(std::int32_t height, Lay lay) {
    for (std::int32_t first = 0; first < height; first += band_rows)
        lay(first, std::min(first + band_rows, height));
}

template <class Rule, class Pixel>
bool calm_band(const PlaneRows<Pixel>& s, std::int32_t first, std::int32_t end, std::int32_t width) {
    if constexpr (has_cases<Rule>)
        return is_calm(Rule::cases, s[first], s[std::min(first + 1, end - 1)], width);
    return false;
}

// Lays the rows of one plane over those of the destination.
template <class Pixel, class Rule>
void lay_rows(std::int32_t height, std::int32_t width, const Rule& rule, const DestinationRows<Pixel>& d,
              const PlaneRows<Pixel>& s) {
    const VectorUnit unit = vector_unit();
    if constexpr (!has_cases<Rule>) return lay_rows_by(unit, false, 0, height, width, rule, d, s);
    for_each_band(height, [&](std::int32_t first, std::int32_t end) {
        lay_rows_by(unit, calm_band<Rule>(s, first, end, width), first, end, width, rule, d, s);
    });
}

// Lays the rows of the front plane and the back plane over those of the destination. Planes that are laid one
// after the other are so a few rows at a time, which stay in the first cache.
template <class Pixel, class Front, class Back>
void lay_rows(std::int32_t height, std::int32_t width, const Stacked<Front, Back>& rule,
              const DestinationRows<Pixel>& d, const PlaneRows<Pixel>& front, const PlaneRows<Pixel>& back) {
    const VectorUnit unit = vector_unit();
    if constexpr (laid_apart<Front, Back>) {
        constexpr std::int32_t pixels_at_a_time = 2048;
        const std::int32_t rows = std::max(1, pixels_at_a_time / width);
        for_each_band(height, [&](std::int32_t first, std::int32_t end) {
            const bool calm_front = calm_band<Front>(front, first, end, width);
            const bool calm_back = calm_band<Back>(back, first, end, width);
            for (std::int32_t row = first; row < end; row += rows) {
                const std::int32_t stop = std::min(row + rows, end);
                lay_rows_by(unit, calm_back, row, stop, width, rule.back, d, back);
                lay_rows_by(unit, calm_front, row, stop, width, rule.front, d, front);
            }
        });
    } else if constexpr (has_cases<Stacked<Front, Back>>) {
        for_each_band(height, [&](std::int32_t first, std::int32_t end) {
            const bool calm = has_cases<Front> ? calm_band<Front>(front, first, end, width)
                                               : calm_band<Back>(back, first, end, width);
            lay_rows_by(unit, calm, first, end, width, rule, d, front, back);
        });
    } else {
        lay_rows_by(unit, false, 0, height, width, rule, d, front, back);
    }
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
        lay_rows_by(vector_unit(), false, 0, height, static_cast<std::int32_t>(bytes), Copy<std::uint8_t>{},
                    d.in_bytes(), s.in_bytes());
    }
}

}  // namespace scroll2d
