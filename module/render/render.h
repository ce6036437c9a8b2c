// Rendering: what is drawn of a scroll, when, and in which order. The frame goes
//
//   frame hook -> do_scrolls          one entry per visible running scroll into the host's main list
//   host draws its list -> BlitScroll2D -> draw_scroll -> the plane routines of the screen's depth
//                                       -> draw_scroll_sprites -> the host's sprite routines
//
// The plane routines' pointers stand in routine_pointers.h.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

namespace scroll2d {

// ---- frame.cpp

// Puts the visible running scrolls into the host's main blit list, scroll 9 first.
void do_scrolls();

// Draws the scroll of an entry that do_scrolls made: 1 when it was drawn, 0 when there was nothing to draw.
std::int32_t BlitScroll2D(__RVKBlit2D__* blit);

// ---- sprites.cpp

// Draws the processes that live in the current scroll, in the host's order of depth, clipped to its view. In
// the layer modes plane 1 is one more entry among them, at the depth of scroll_entry.
void draw_scroll_sprites(const __RVKBlit2D__* scroll_entry);

// ---- services.cpp: queries for the graphics module. A mask is read as mask_shows() reads it. All return 1
// or 0; outputs are written on 1 only.

std::int32_t GetScrollRegion(std::int32_t scroll, std::int32_t mask, std::int32_t x, std::int32_t y,
                             std::int32_t w, std::int32_t h, __RVKRegion__* out);
std::int32_t GetScrollPoint(std::int32_t scroll, std::int32_t mask, __RVKPoint2D__* out);
std::int32_t GetScrollPos(std::int32_t scroll, std::int32_t mask, __RVKPoint2D__* plane1,
                          __RVKPoint2D__* plane2);
std::int32_t GetProcessInScroll(std::int32_t scroll, std::int32_t mask);
std::int32_t GetProcessOutScroll(std::int32_t scroll, std::int32_t mask);

// The blit entry most recently obtained; nothing reads it once the entry has been filled.
extern __RVKBlit2D__* pbltScroll2D;
extern std::int32_t num_blits_scroll2D;  // entries in the present sprite pass
extern __RVKBlit2D__** pBlit2DZOrder;    // the entry being drawn in the present sprite pass

}  // namespace scroll2d
