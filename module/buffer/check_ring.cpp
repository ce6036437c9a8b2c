#include "module/buffer/check_ring.h"

#ifndef NDEBUG

#include <cassert>
#include <cstdint>
#include <cstring>

#include "module/contract/numbers.h"
#include "module/state/plane.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// Static, so that checking allocates nothing: tests count allocations.
std::uint8_t snapshot[1 << 22];

std::size_t bytes(std::int64_t pixels) {
    return static_cast<std::size_t>(pixels * pscroll->made_pixel_bytes);
}

// The reading rule of buffer.h.
const std::uint8_t* view_row(const ConstPlane& plane, std::int32_t row) {
    const std::int64_t wrapped = row < plane.rows_to_wrap() ? 0 : pscroll->ring_size;
    return plane.start() + (std::int64_t{row} * pscroll->width - wrapped) * pscroll->made_pixel_bytes;
}

const std::uint8_t* map_pixel(const ConstPlane& plane, std::int32_t column, std::int32_t row) {
    const std::int64_t x = floor_mod(std::int64_t{plane.x()} + column, plane.map_width());
    const std::int64_t y = floor_mod(std::int64_t{plane.y()} + row, plane.map_height());
    return plane.map_pixels() + bytes(y * plane.map_width() + x);
}

void check_pointers(const ConstPlane& plane) {
    const std::int64_t offset = (plane.start() - plane.buffer()) / pscroll->made_pixel_bytes;
    assert(offset >= 0 && offset < pscroll->ring_size);
    assert(plane.rows_to_wrap() == pscroll->height - offset / pscroll->width);
    assert(pscroll->ring_size == pscroll->width * pscroll->height);
    assert(pscroll->pitch == pscroll->width * pscroll->made_pixel_bytes);
    // Going on past the wrap is going back by the last row's offset.
    assert(pscroll->last_row_offset == pscroll->ring_size - pscroll->width);
    assert(pscroll->last_row_bytes == pscroll->last_row_offset * pscroll->made_pixel_bytes);
}

template <class Expected>
void check_view(const ConstPlane& plane, Expected expected) {
    check_pointers(plane);
    for (std::int32_t row = 0; row < pscroll->height; ++row) {
        for (std::int32_t column = 0; column < pscroll->width; ++column) {
            const std::uint8_t* shown = view_row(plane, row) + bytes(column);
            assert(std::memcmp(shown, expected(column, row), bytes(1)) == 0);
        }
    }
}

}  // namespace

void check_filled(std::int32_t number) {
    const ConstPlane plane(*pscroll, number);
    check_view(plane, [&](std::int32_t column, std::int32_t row) { return map_pixel(plane, column, row); });
}

ShiftCheck::ShiftCheck(std::int32_t plane)
    : plane_(plane), taken_(bytes(pscroll->ring_size) <= sizeof snapshot) {
    if (!taken_) return;
    const ConstPlane p(*pscroll, plane_);
    for (std::int32_t row = 0; row < pscroll->height; ++row) {
        std::memcpy(snapshot + row * pscroll->pitch, view_row(p, row), bytes(pscroll->width));
    }
}

void ShiftCheck::moved_by(std::int64_t dx, std::int64_t dy) const {
    if (!taken_) return;
    const ConstPlane p(*pscroll, plane_);
    check_view(p, [&](std::int32_t column, std::int32_t row) {
        const std::int64_t old_column = column + dx;
        const std::int64_t old_row = row + dy;
        const bool stayed =
            old_column >= 0 && old_column < pscroll->width && old_row >= 0 && old_row < pscroll->height;
        return stayed ? snapshot + bytes(old_row * pscroll->width + old_column) : map_pixel(p, column, row);
    });
}

}  // namespace scroll2d

#endif
