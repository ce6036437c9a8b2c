// Where a plane is calm: most pixels are like their neighbours, so that to ask for simple cases saves more
// than the processor's wrong guesses at the answers cost.
#pragma once

#include <cstdint>

#include "module/render/pixel_rules.h"

namespace scroll2d {

// Rows that are judged together, by the first two of them. With half as many, judging a broken picture costs
// two to four hundredths of its frame.
constexpr std::int32_t band_rows = 64;

// Is it calm below two rows of a plane, the first of a band and the one after it? Of whole lines of the
// caches the first pixel is looked at. A line surprises where it answers neither as the one before it nor as
// the one below it; the band is calm with more than `lines_a_surprise` simple lines for each surprise. Half a
// surprise is added, since a few lines without any prove little.
bool is_calm(const Cases& cases, const std::uint16_t* row, const std::uint16_t* next, std::int32_t width);
bool is_calm(const Cases& cases, const std::uint32_t* row, const std::uint32_t* next, std::int32_t width);

// Overrules that for every band, for tests and for measuring.
enum class Asking { where_calm, never, always };
extern Asking asking;

}  // namespace scroll2d
