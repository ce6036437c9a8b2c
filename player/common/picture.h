/*
 * Pictures as the player reads, joins and writes them: RGBA, and where a PNG has a palette, its indices as
 * well. They have no colour depth; game.h brings them to one.
 */
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/depth.h"

namespace player {

using host::Rgba;

struct Picture : host::Image {
    std::vector<std::uint8_t> indices;  // as long as `pixels` when the picture has a palette, else empty
    std::array<Rgba, 256> palette{};  // meaningful with `indices` only; entries that the file lacks are black
    bool has_alpha = false;           // some pixel may be less than opaque

    Picture() = default;
    explicit Picture(host::Image image) : host::Image(std::move(image)) {}
    Picture(int w, int h, Rgba fill = {});  // std::bad_alloc when no memory could hold it

    [[nodiscard]] bool indexed() const { return !indices.empty(); }
    [[nodiscard]] std::size_t place(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    Rgba& at(int x, int y) { return pixels[place(x, y)]; }
    [[nodiscard]] const Rgba& at(int x, int y) const { return pixels[place(x, y)]; }
};

// Copies `source` into `target` at (x, y); what lies outside is cut.
void paste(Picture& target, const Picture& source, int x, int y);

// The part of w by h pixels at (x, y), which must lie within the picture.
Picture cut_out(const Picture& source, int x, int y, int w, int h);

// Each pixel as a square of `times` by `times`, times >= 1.
Picture enlarged(const Picture& source, int times);

// Red, green and blue of each pixel, row after row.
std::vector<std::uint8_t> rgb_bytes(const Picture& picture);

// png.cpp

// Reads any PNG. Throws std::runtime_error naming the file and what is wrong with it.
Picture read_png(const std::string& path);

// Writes with the palette when the picture has one, with alpha when has_alpha says so, else as RGB; whole or
// not at all, as NewFile does. Throws std::runtime_error naming the file.
void write_png(const std::string& path, const Picture& picture);

// The same PNG in memory, small rather than quick. Throws std::runtime_error.
std::vector<std::uint8_t> packed_png(const Picture& picture);

}  // namespace player
