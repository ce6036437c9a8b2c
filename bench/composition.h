// What a scroll has to look like, worked out pixel by pixel from the maps: slow, plain, and without anything
// of the module.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "bench/stage.h"

namespace bench {

// The screen after a scroll of this variant has been drawn at these positions over `before`.
[[nodiscard]] std::vector<std::byte> compose(Stage& stage, const Variant& variant, Position front,
                                             Position back, std::span<const std::byte> before);

// Empty when the screen is the expected picture; otherwise where the first difference lies, in words. Colour
// fields may differ by `tolerance`; with a tolerance byte 3 of 32-bit pixels is not looked at. Palette
// indices always have to be the same.
[[nodiscard]] std::string difference(Stage& stage, std::span<const std::byte> expected,
                                     std::int32_t tolerance);

}  // namespace bench
