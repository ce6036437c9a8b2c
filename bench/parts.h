// The parts of the measurements. Unless said otherwise they check what they draw before they time it and
// throw std::runtime_error for a wrong picture.
#pragma once

#include "bench/options.h"
#include "bench/report.h"

namespace bench {

// draw.cpp: the draw callback for every family, depth, view and motion, beside memcpy, SDL2 and pixman.
void measure_drawing(const Options& options, Report& report);

// buffers.cpp: a fill beside memcpy of the view; moves of 0 pixels to half the view beside a refill.
void measure_fills(const Options& options, Report& report);
void measure_moves(const Options& options, Report& report);

// growth.cpp: how the cost of a frame grows with view, processes, map and number of scrolls, in one of
// the rules that measure_drawing checks.
void measure_growth(const Options& options, Report& report);

// frame.cpp: where the time of whole frames goes when the player plays a demo: script, lists, planes,
// sprites, texts, the screen's colours, the window. Its pictures are those of the gallery, so it checks none.
void measure_frames(const Options& options, Report& report);

// sheet.cpp: measures nothing, but shows each kind of pictures, both planes over the cover, in the order of
// kinds(). Errors: std::runtime_error for a file that cannot be written.
void write_sheet(const std::string& path);

}  // namespace bench
