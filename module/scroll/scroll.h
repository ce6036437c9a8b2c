// Scroll control: the script functions that start, stop, move, refresh and aim scrolls, and the camera logic.
// It decides where a scroll is and what it shows; it draws nothing.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

#pragma GCC visibility push(default)  // seen by the host; module/entry/exports.map lists them
extern "C" {

// Script functions. Each takes its arguments with PopInt, the last one first, reports a failure with
// RaiseError before it returns 0x80000000, and ends by returning what ReturnInt returns. A scroll number is
// 0-9; all but scroll_start take -1 for all ten.

// scroll_start(num, file, graph1, graph2, region, flags [, mode]) -> num.   start.cpp
// Errors 107 to 112, 146 (empty view), 100 (no memory); a mode outside 0-3 fails without a report.
std::int32_t RVK_scroll_start();

// scroll_stop(num) -> how many ran and were stopped. Error 107.   stop.cpp
std::int32_t RVK_scroll_stop();

// scroll_move(num) -> how many running scrolls were moved; 0 when a map has gone. Error 107.   camera.cpp
std::int32_t RVK_scroll_move();

// scroll_refresh(num) -> how many running scrolls were refreshed; 0 when a file or a map is not there. Error
// 107.   refresh.cpp
std::int32_t RVK_scroll_refresh();

// scroll_set_destination(num, file, graph, region) -> how many scrolls were aimed; 0 when there is no such
// map. Errors 131, 109, 110, 108, 100 (no memory).   destination.cpp
std::int32_t RVK_scroll_set_destination();

}  // extern "C"
#pragma GCC visibility pop

namespace scroll2d {

// ---- stop.cpp

// Frees the buffers of a record that runs, and marks it idle.
void release_scroll(std::int32_t number);

// Releases a scroll and deletes the processes that no running scroll shows any more. Leaves the script
// element.
//   writes: scroll_num, pscroll
void stop_scroll(std::int32_t number);

// Services of the graphics module.
void StopScroll(std::int32_t number);
void StopAllScroll();

// ---- camera.cpp

// Moves the current scroll: after its camera, or to the positions that the script wrote. planes = 1 moves
// plane 1 alone, 2 plane 1 and then plane 2.   reads: pscroll, _scroll_
void move_scroll(std::int32_t planes);

// ---- script_call.cpp

// Reports a script error about an argument (1-based, 0: none in particular). False, for the test that failed.
bool refuse(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value);

// Reports a script error; the result that the script function then returns.
std::int32_t fail(const char* function, std::int32_t code, std::int32_t argument, std::int32_t value);

// Whether a script may name this region: -1, or a region that is defined.   writes: pregion_scroll2D
bool accept_region(const char* function, std::int32_t argument, std::int32_t region);

// Pops the script's scroll number for a function that takes -1 for all ten. False after the number has been
// refused with error 107.
bool pop_scroll_range(const char* function, std::int32_t& number);

}  // namespace scroll2d
