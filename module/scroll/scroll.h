// Scroll control: the script functions that start, stop, move, refresh and aim scrolls, and the camera logic.
// It decides where a scroll is and what it shows; it draws nothing.
#pragma once

#include <cstdint>

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

// Makes a scroll idle, frees its buffers and deletes the processes that no running scroll shows any more.
// Leaves the script element.
void stop_scroll(std::int32_t number);

// Services of the graphics module.
void StopScroll(std::int32_t number);
void StopAllScroll();

// ---- camera.cpp

// Moves the current scroll: after its camera, or to the positions that the script wrote. planes = 1 moves
// plane 1 alone, 2 plane 1 and then plane 2.   reads: pscroll, _scroll_
void move_scroll(std::int32_t planes);

}  // namespace scroll2d
