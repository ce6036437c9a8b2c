#include <algorithm>
#include <cstdint>
#include <cstring>

#include "module/buffer/buffer.h"
#include "module/buffer/check_ring.h"
#include "module/buffer/map_copy.h"
#include "module/contract/numbers.h"
#include "module/state/plane.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

// The ring of a plane while it is shifted, as a pixel offset of the read pointer. Stores the read pointer
// back when it goes.
template <class Pixel>
class Ring {
  public:
    Ring(ScrollRecord& r, std::int32_t number)
        : plane_(r, number),
          base_(reinterpret_cast<Pixel*>(plane_.buffer())),
          width_(r.width),
          height_(r.height),
          size_(r.ring_size),
          offset_(static_cast<std::int32_t>(reinterpret_cast<Pixel*>(plane_.start()) - base_)) {}
    ~Ring() { plane_.start() = reinterpret_cast<std::uint8_t*>(base_ + offset_); }
    Ring(const Ring&) = delete;
    Ring& operator=(const Ring&) = delete;

    // Columns that the read pointer may go before it reaches the first pixel of a ring row.
    std::int32_t columns_ahead() const { return width_ - column(); }
    std::int32_t columns_behind() const { return column() == 0 ? width_ : column(); }

    // A right step that reaches a ring row's first pixel ends the straddling: what the extra row held for
    // ring row 0 goes back there.
    void step_right(std::int32_t columns) {
        offset_ += columns;
        if (column() != 0) return;
        std::memcpy(base_, base_ + size_, pitch());
        --plane_.rows_to_wrap();
        if (offset_ == size_) {
            offset_ = 0;
            plane_.rows_to_wrap() = height_;
        }
    }

    // A left step from a ring row's first pixel begins a straddling: the extra row takes over from ring row
    // 0.
    void step_left(std::int32_t columns) {
        if (column() == 0) {
            std::memcpy(base_ + size_, base_, pitch());
            if (offset_ == 0) {
                offset_ = size_;
                plane_.rows_to_wrap() = 0;
            }
            ++plane_.rows_to_wrap();
        }
        offset_ -= columns;
    }

    void step_up(std::int32_t rows) {
        offset_ -= rows * width_;
        plane_.rows_to_wrap() += rows;
        if (offset_ < 0) {
            offset_ += size_;
            plane_.rows_to_wrap() -= height_;
        }
    }

    void step_down(std::int32_t rows) {
        offset_ += rows * width_;
        plane_.rows_to_wrap() -= rows;
        if (offset_ >= size_) {
            offset_ -= size_;
            plane_.rows_to_wrap() += height_;
        }
    }

    // The first pixel of a view row.
    Pixel* view_row(std::int32_t row) const {
        return base_ + offset_ + (row * width_ - (row < plane_.rows_to_wrap() ? 0 : size_));
    }

    // Copies a rectangle of the map to view pixel (column, row): the rows before the wrap, then those after
    // it. A row that straddles the ring's end runs on into the extra row.
    void copy(const MapRectangle& from, std::int32_t column, std::int32_t row) const {
        const std::int32_t before = std::clamp(plane_.rows_to_wrap() - row, 0, from.rows);
        if (before > 0) copy_rows({from.x, from.y, from.columns, before}, view_row(row) + column);
        const std::int32_t after = from.rows - before;
        if (after > 0)
            copy_rows({from.x, from.y + before, from.columns, after}, view_row(row + before) + column);
    }

    std::int32_t width() const { return width_; }
    std::int32_t height() const { return height_; }

  private:
    void copy_rows(const MapRectangle& from, Pixel* to) const {
        copy_from_map(plane_.map(), from, sizeof(Pixel), reinterpret_cast<std::uint8_t*>(to), width_);
    }
    std::int32_t column() const { return offset_ % width_; }
    std::size_t pitch() const { return static_cast<std::size_t>(width_) * sizeof(Pixel); }

    Plane plane_;
    Pixel* base_;
    std::int32_t width_;
    std::int32_t height_;
    std::int32_t size_;
    std::int32_t offset_;
};

// Columns go as strips, cut where the read pointer reaches the first pixel of a ring row: the copy between
// ring row 0 and the extra row is made there, as the single steps make it. (x, y) is the position shown.
template <class Pixel>
void shift_right(std::int32_t number, std::int64_t x, std::int32_t y, std::int32_t columns) {
    Ring<Pixel> ring(*pscroll, number);
    while (columns > 0) {
        const std::int32_t strip = columns < ring.columns_ahead() ? columns : ring.columns_ahead();
        ring.step_right(strip);
        ring.copy({x + ring.width(), y, strip, ring.height()}, ring.width() - strip, 0);
        x += strip;
        columns -= strip;
    }
}

template <class Pixel>
void shift_left(std::int32_t number, std::int64_t x, std::int32_t y, std::int32_t columns) {
    Ring<Pixel> ring(*pscroll, number);
    while (columns > 0) {
        const std::int32_t strip = columns < ring.columns_behind() ? columns : ring.columns_behind();
        ring.step_left(strip);
        ring.copy({x - strip, y, strip, ring.height()}, 0, 0);
        x -= strip;
        columns -= strip;
    }
}

template <class Pixel>
void shift_up(std::int32_t number, std::int32_t x, std::int64_t y, std::int32_t rows) {
    Ring<Pixel> ring(*pscroll, number);
    ring.step_up(rows);
    ring.copy({x, y - rows, ring.width(), rows}, 0, 0);
}

template <class Pixel>
void shift_down(std::int32_t number, std::int32_t x, std::int64_t y, std::int32_t rows) {
    Ring<Pixel> ring(*pscroll, number);
    ring.step_down(rows);
    ring.copy({x, y + ring.height(), ring.width(), rows}, 0, ring.height() - rows);
}

// Columns first, at the old vertical position; then rows, at the new horizontal one.
void shift(std::int32_t number, std::int32_t old_x, std::int32_t old_y, std::int32_t new_x, std::int32_t dx,
           std::int32_t dy) {
    if (dx > 0) moving_scroll_right(number, old_x, old_y, dx);
    if (dx < 0) moving_scroll_left(number, old_x, old_y, -dx);
    if (dy > 0) moving_scroll_down(number, new_x, old_y, dy);
    if (dy < 0) moving_scroll_up(number, new_x, old_y, -dy);
}

bool more_than_half(std::int64_t distance, std::int32_t extent) {
    const std::int32_t half = extent >> 1;
    return distance > half || distance < -half;
}

}  // namespace

void moving_scroll(std::int32_t number, std::int64_t dx, std::int64_t dy) {
    ScrollRecord& r = *pscroll;
    const Plane plane(r, number);
    if (!buffers_fit(r)) return;

    const std::int32_t old_x = plane.x();
    const std::int32_t old_y = plane.y();
    const std::int32_t new_x =
        wrap32(clamp_position(old_x + dx, plane.wraps_x(), r.width, plane.map_width()));
    const std::int32_t new_y =
        wrap32(clamp_position(old_y + dy, plane.wraps_y(), r.height, plane.map_height()));
    const std::int64_t moved_x = std::int64_t{new_x} - old_x;
    const std::int64_t moved_y = std::int64_t{new_y} - old_y;
    if (more_than_half(moved_x, r.width) || more_than_half(moved_y, r.height)) {
        set_scroll(number, new_x, new_y);
        return;
    }

    plane.x() = new_x;
    plane.y() = new_y;
    const ShiftCheck check(number);
    shift(number, old_x, old_y, new_x, static_cast<std::int32_t>(moved_x),
          static_cast<std::int32_t>(moved_y));
    check.moved_by(moved_x, moved_y);

    const ScriptPlane script(*_scroll_, number);
    script.x() = new_x;
    script.y() = new_y;
}

SCROLL2D_EACH_DEPTH(void, moving_scroll_left,
                    (std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t steps),
                    shift_left<Pixel>(plane, x, y, steps);)
SCROLL2D_EACH_DEPTH(void, moving_scroll_right,
                    (std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t steps),
                    shift_right<Pixel>(plane, x, y, steps);)
SCROLL2D_EACH_DEPTH(void, moving_scroll_up,
                    (std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t steps),
                    shift_up<Pixel>(plane, x, y, steps);)
SCROLL2D_EACH_DEPTH(void, moving_scroll_down,
                    (std::int32_t plane, std::int32_t x, std::int32_t y, std::int32_t steps),
                    shift_down<Pixel>(plane, x, y, steps);)

}  // namespace scroll2d
