// Rows of pixels laid over those of the view, by the best loop that there is for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "module/render/pixel_rules.h"
#include "module/render/plane_rows.h"
#include "module/render/vector_builds.h"
#include "module/render/vector_unit.h"

namespace scroll2d {

// Lays the rows of one plane, or of the front plane and the back plane, over those of the destination.
template <class Rule, class Destination, class... Source>
void lay_rows(std::int32_t height, std::int32_t width, Rule rule, const Destination& d, const Source&... s) {
    lay_rows_by(vector_unit(), height, width, rule, d, s...);
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
        lay_rows_by(vector_unit(), height, static_cast<std::int32_t>(bytes), Copy<std::uint8_t>{},
                    d.in_bytes(), s.in_bytes());
    }
}

}  // namespace scroll2d
