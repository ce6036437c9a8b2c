// What all script functions share: the scrolls that a script's number names, and how a call fails.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"
#include "module/contract/script_numbers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

// Error codes. Their texts belong to the host.
constexpr std::int32_t error_no_memory = 100;
constexpr std::int32_t error_scroll_number = 107;
constexpr std::int32_t error_region = 108;
constexpr std::int32_t error_file = 109;
constexpr std::int32_t error_graph = 110;
constexpr std::int32_t error_empty_file = 111;
constexpr std::int32_t error_no_map = 112;
constexpr std::int32_t error_destination_scroll_number = 131;
constexpr std::int32_t error_empty_view = 146;

// The result of a script call that failed: 0x80000000.
constexpr std::int32_t failure = INT32_MIN;

// Reports a script error about an argument (1-based, 0: none in particular). False, for the test that failed.
bool refuse(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value);

// Reports a script error; the result that the script function then returns.
std::int32_t fail(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value);

// Whether a script may name this region: -1, which leaves `region` as it is, or one that is defined.
//   writes: region, pregion_scroll2D
bool accept_region(const char* function, std::int32_t argument, std::int32_t number,
                   const __RVKRegion__*& region);

// Whether a script may name these scrolls: one, or all ten as all_scroll.
constexpr bool is_scroll_range(std::int32_t number) {
    return number == all_scroll || is_scroll_number(number);
}

// What serving one scroll came to.
enum class Served {
    counted,
    left_out,
    ended,  // with it the call: no further scroll is served
};

// Serves the scrolls that a number names, in increasing order, each as the current one. How many were
// counted, or -1 when `serve` ended the call.
template <class Serve>
std::int32_t walk_scrolls(std::int32_t number, Serve serve) {
    const SelectionKept kept;
    const std::int32_t first = number == all_scroll ? 0 : number;
    const std::int32_t last = number == all_scroll ? scroll_count - 1 : number;
    std::int32_t count = 0;
    for (std::int32_t i = first; i <= last; ++i) {
        select_scroll(i);
        const Served served = serve();
        if (served == Served::ended) return -1;
        if (served == Served::counted) ++count;
    }
    return count;
}

// A whole script function with a scroll number for its only argument: error 107 for a number that names none,
// otherwise how many scrolls were counted, 0 when `serve` ended the call.
std::int32_t serve_scrolls(const char* function, Served (*serve)());

}  // namespace scroll2d
