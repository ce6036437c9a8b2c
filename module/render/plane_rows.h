// Where the rows of a plane and of the view lie.
#pragma once

#include <cstddef>
#include <cstdint>

#include "module/contract/host_records.h"
#include "module/state/plane.h"

namespace scroll2d {

// The rows of a plane's picture, by the reading rule of module/buffer/buffer.h.
template <class Pixel>
class PlaneRows {
  public:
    PlaneRows(const ScrollRecord& r, const ConstPlane& plane)
        : start_(reinterpret_cast<const Pixel*>(plane.start())),
          width_(r.width),
          ring_size_(r.ring_size),
          rows_to_wrap_(plane.rows_to_wrap()) {}
    PlaneRows(const Pixel* start, std::ptrdiff_t width, std::ptrdiff_t ring_size, std::int32_t rows_to_wrap)
        : start_(start), width_(width), ring_size_(ring_size), rows_to_wrap_(rows_to_wrap) {}
    PlaneRows<std::uint8_t> in_bytes() const {
        constexpr std::ptrdiff_t size = sizeof(Pixel);
        return {reinterpret_cast<const std::uint8_t*>(start_), width_ * size, ring_size_ * size,
                rows_to_wrap_};
    }
    const Pixel* operator[](std::int32_t row) const {
        return start_ + (static_cast<std::ptrdiff_t>(row) * width_ - (row < rows_to_wrap_ ? 0 : ring_size_));
    }

  private:
    const Pixel* start_;
    std::ptrdiff_t width_;
    std::ptrdiff_t ring_size_;
    std::int32_t rows_to_wrap_;
};

// The rows of the view on the destination.
template <class Pixel>
class DestinationRows {
  public:
    explicit DestinationRows(const ScrollRecord& r)
        : origin_(static_cast<Pixel*>(r.dest_map->pixels) + r.dest_x +
                  static_cast<std::ptrdiff_t>(r.dest_y) * r.dest_map->width),
          width_(r.dest_map->width) {}
    DestinationRows(Pixel* origin, std::ptrdiff_t width) : origin_(origin), width_(width) {}
    DestinationRows<std::uint8_t> in_bytes() const {
        constexpr std::ptrdiff_t size = sizeof(Pixel);
        return {reinterpret_cast<std::uint8_t*>(origin_), width_ * size};
    }
    Pixel* operator[](std::int32_t row) const { return origin_ + row * width_; }

  private:
    Pixel* origin_;
    std::ptrdiff_t width_;
};

}  // namespace scroll2d
