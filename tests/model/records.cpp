#include "tests/model/records.h"

#include <sstream>

#include "tests/model/numbers.h"

namespace model {

namespace {

using scroll2d::ScrollRecord;

std::string line(const std::string& field, Int expected, Int actual) {
    if (expected == actual) return {};
    return "\n    " + field + ": expected " + std::to_string(expected) + ", got " + std::to_string(actual);
}

// A plane's buffer has a row more than the view; the read pointer is a pixel of the rows before that, and so
// many rows of the view begin there before the ring's end is reached.
std::string trouble_of(const ScrollRecord& r, const std::uint8_t* buffer, const std::uint8_t* start,
                       Int rows_to_wrap, const tests::ModuleAllocator& memory) {
    const auto held = memory.live.find(buffer);
    if (held == memory.live.end()) return "\n    a buffer is not the module's";
    const Int bytes = r.made_pixel_bytes;
    if (bytes == 0) return {};  // not filled
    const Int offset = start - buffer;
    if (offset < 0 || offset >= r.ring_size * bytes || offset % bytes != 0)
        return "\n    a read pointer is outside its ring";
    return line("bytes of a buffer", (Int{r.made_height} + 1) * r.made_width * bytes,
                static_cast<Int>(held->second.size())) +
           line("rows to wrap", r.made_height - offset / bytes / r.made_width, rows_to_wrap);
}

}  // namespace

std::string name_of(const char* names, std::size_t word) {
    std::istringstream in(names);
    std::string name;
    for (std::size_t i = 0; i <= word; ++i) in >> name;
    return name;
}

std::string differences(const char* names, std::span<const std::int32_t> expected,
                        std::span<const std::int32_t> actual) {
    std::string all;
    for (std::size_t i = 0; i < expected.size(); ++i) all += line(name_of(names, i), expected[i], actual[i]);
    return all;
}

std::string trouble_of(const ScrollRecord& r, const tests::ModuleAllocator& memory) {
    if (r.active == 0) return line("idle, buffers", 0, (r.buffer1 != nullptr) + (r.buffer2 != nullptr));
    if (r.active != 1 || r.planes < 1 || r.planes > 2)
        return "\n    active, but not a scroll of one plane or two";
    std::string all = trouble_of(r, r.buffer1, r.start1, r.rows_to_wrap1, memory);
    if (r.planes == 2) all += trouble_of(r, r.buffer2, r.start2, r.rows_to_wrap2, memory);
    return all + line("buffers", r.planes, 1 + (r.buffer2 != nullptr));
}

// An idle scroll keeps its destination and has no maps; what else it holds the next start replaces.
std::string differences(const Scroll& s, const ScrollRecord& r) {
    const Plane& front = s.plane[0];
    const Plane& back = s.plane[1];
    std::string all = line("active", s.active, r.active) + line("alpha", s.alpha, r.alpha) +
                      line("dest_file", s.dest_file, r.dest_file) +
                      line("dest_graph", s.dest_graph, r.dest_graph) +
                      line("map1_pixels", address(front.map_pixels), address(r.map1_pixels)) +
                      line("map2_pixels", address(back.map_pixels), address(r.map2_pixels));
    if (!s.active) return all;
    all += line("planes", s.planes, r.planes) + line("file", s.file, r.file) +
           line("flags", s.flags, r.flags) + line("region", s.region, r.region) +
           line("mode", s.mode, r.mode) + line("dest_x", s.dest_x, r.dest_x) +
           line("dest_y", s.dest_y, r.dest_y) + line("width", s.width, r.width) +
           line("height", s.height, r.height) + line("graph1", front.graph, r.graph1) +
           line("graph2", back.graph, r.graph2) + line("plane1_x", front.x, r.plane1_x) +
           line("plane1_y", front.y, r.plane1_y) + line("map1_width", front.map_width, r.map1_width) +
           line("map1_height", front.map_height, r.map1_height) +
           line("map1_alpha_flag", front.alpha_flag, r.map1_alpha_flag != 0);
    if (s.planes == 2)
        all += line("plane2_x", back.x, r.plane2_x) + line("plane2_y", back.y, r.plane2_y) +
               line("map2_width", back.map_width, r.map2_width) +
               line("map2_height", back.map_height, r.map2_height) +
               line("map2_alpha_flag", back.alpha_flag, r.map2_alpha_flag != 0);
    if (s.made_bytes == 0) return all;  // the buffers are for no view
    const Int pitch = s.made_width * s.made_bytes;
    return all + line("ring_size", s.made_width * s.made_height, r.ring_size) +
           line("pitch", pitch, r.pitch) +
           line("last_row_offset", (s.made_height - 1) * s.made_width, r.last_row_offset) +
           line("last_row_bytes", (s.made_height - 1) * pitch, r.last_row_bytes);
}

}  // namespace model
