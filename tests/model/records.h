// What differs between records: those that module and host share, by their words, and the module's own, held
// against what its fields mean.
#pragma once

#include <span>
#include <string>

#include "module/state/scroll_table.h"
#include "tests/model/model.h"
#include "tests/module/allocation.h"

namespace model {

// The words of the records that are compared as a whole; a number has no name.
inline constexpr const char* kElementWords =
    "camera ratio file graph1 graph2 region1 region2 speed x0 y0 x1 y1 z alpha visible";
inline constexpr const char* kEntryWords =
    "id owner drawn x x2 y y2 7 8 9 10 graph_table pos_x pos_y z 15 region resolution 18 19 word20 "
    "angle size size_x size_y word25 word26 flags word28 word29 word30 word31 32 33 34 35 has_clip "
    "clip_x clip_x2 clip_y clip_y2 41 bitmap target draw";
inline constexpr const char* kProcessWords =
    "0 1 2 3 status 5 6 7 8 scroll_mark 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 scroll_mask "
    "file graph graph_table x y z word33 region resolution 36 37 word38 angle size size_x size_y "
    "word43 word44 flags word46 word47 word48 word49";

inline constexpr const char* kAnswers =
    "GetScrollRegion x x2 y y2 GetScrollPoint x y GetScrollPos x0 y0 x1 y1 GetScrollPos,1 x0 y0 "
    "GetScrollPos,2 x1 y1 GetProcessInScroll GetProcessOutScroll GetScrollRegion,null "
    "GetScrollPoint,null GetScrollPos,null";

[[nodiscard]] std::string name_of(const char* names, std::size_t word);

// A line for each word that differs.
[[nodiscard]] std::string differences(const char* names, std::span<const std::int32_t> expected,
                                      std::span<const std::int32_t> actual);

// What is wrong with a record by itself, whatever was called: a running scroll has the buffers of its planes
// and its read pointers inside them, an idle one has none. Empty: nothing.
std::string trouble_of(const scroll2d::ScrollRecord& r, const tests::ModuleAllocator& memory);

// The fields in which a record differs from the model's scroll, a line each.
std::string differences(const Scroll& expected, const scroll2d::ScrollRecord& actual);

}  // namespace model
