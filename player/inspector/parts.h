// The parts of the inspector that keep nothing from picture to picture, drawn into the present frame of
// ImGui.
#pragma once

#include "host/engine.h"
#include "player/canvas/canvas.h"
#include "player/inspector/layout.h"
#include "player/inspector/marks.h"

namespace player {

// overlay.cpp: views, regions, cameras, edges and sprites over the game; no text where it is covered.
void draw_overlay(const Survey& survey, const Placement& placed, const Shown& shown, const Area& covered);

// legend.cpp: what the colours mean; a click hides or shows a kind of mark.
void draw_legend(const Area& area, Shown& shown);

// minimaps.cpp: the map of each plane, what the view shows of it, where it repeats and where it ends.
// `renew`: look at the maps' pixels again, which costs a little.
void draw_minimaps(const Area& area, const Survey& survey, host::Engine& engine, Canvas& canvas, bool renew);

// legend.cpp as well: begins a window of ImGui without decoration that fills an area; who begins it ends it.
void begin_part(const char* name, const Area& area);

}  // namespace player
