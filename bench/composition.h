// What a scroll has to look like, worked out pixel by pixel from the maps: slow, plain, and without anything
// of the module.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "bench/stage.h"

namespace bench {

// Lays a backdrop, draws a frame of the show over it, one step further, and compares the screen with the
// composition, which it returns.   Errors: std::runtime_error that names `what` when they differ.
std::vector<std::byte> check_frame(Stage& stage, Show& show, const Variant& variant, Position step,
                                   const std::string& what);

// Compares the screen with the expected picture. Colour fields may differ by `tolerance`; with a tolerance
// byte 3 of 32-bit pixels is not looked at. Palette indices always have to be the same.
// Errors: std::runtime_error that names `what` and the first pixel that differs.
void expect_shown(Stage& stage, std::span<const std::byte> expected, std::int32_t tolerance,
                  const std::string& what);

}  // namespace bench
