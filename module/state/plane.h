// A plane of a scroll. The two planes differ by the data below alone: every algorithm is written once, for "a
// plane". Plane 1 for 1, plane 2 for any other number.
#pragma once

#include <cstdint>

#include "module/contract/script_numbers.h"
#include "module/state/script_element.h"
#include "module/state/scroll_record.h"

namespace scroll2d {

// A plane's map, as the record has it.
struct PlaneMap {
    const std::uint8_t* pixels;
    std::int32_t width;
    std::int32_t height;
};

// The fields of a record that belong to a plane; those of a const record are const.
template <class Record>
class PlaneOf {
  public:
    PlaneOf(Record& record, std::int32_t number) : r_(record), first_(number == 1) {}

    auto& graph() const { return first_ ? r_.graph1 : r_.graph2; }
    auto& rows_to_wrap() const { return first_ ? r_.rows_to_wrap1 : r_.rows_to_wrap2; }
    auto& buffer() const { return first_ ? r_.buffer1 : r_.buffer2; }
    auto& start() const { return first_ ? r_.start1 : r_.start2; }
    auto& x() const { return first_ ? r_.plane1_x : r_.plane2_x; }
    auto& y() const { return first_ ? r_.plane1_y : r_.plane2_y; }
    auto& map_width() const { return first_ ? r_.map1_width : r_.map2_width; }
    auto& map_height() const { return first_ ? r_.map1_height : r_.map2_height; }
    auto& map_alpha_flag() const { return first_ ? r_.map1_alpha_flag : r_.map2_alpha_flag; }
    auto& map_pixels() const { return first_ ? r_.map1_pixels : r_.map2_pixels; }

    PlaneMap map() const { return {map_pixels(), map_width(), map_height()}; }
    bool wraps_x() const { return (r_.flags & wrap_x_bit()) != 0; }
    bool wraps_y() const { return (r_.flags & wrap_y_bit()) != 0; }
    std::int32_t wrap_x_bit() const { return first_ ? wrap_plane1_x : wrap_plane2_x; }
    std::int32_t wrap_y_bit() const { return first_ ? wrap_plane1_y : wrap_plane2_y; }

  private:
    Record& r_;
    bool first_;
};
using Plane = PlaneOf<ScrollRecord>;
using ConstPlane = PlaneOf<const ScrollRecord>;

// The fields of a script element that belong to a plane.
class ScriptPlane {
  public:
    ScriptPlane(ScrollScriptStruct& element, std::int32_t number) : s_(element), first_(number == 1) {}

    std::int32_t& graph() const { return first_ ? s_.graph1 : s_.graph2; }
    std::int32_t& x() const { return first_ ? s_.x0 : s_.x1; }
    std::int32_t& y() const { return first_ ? s_.y0 : s_.y1; }

  private:
    ScrollScriptStruct& s_;
    bool first_;
};

}  // namespace scroll2d
