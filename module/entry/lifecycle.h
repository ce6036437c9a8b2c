// The four hooks by which the host drives the module, through the pointers of the hooks table.
#pragma once

#pragma GCC visibility push(default)  // seen by the host; module/entry/exports.map lists them
extern "C" {

// Once, after registration: fills scrollSystem and hands it to the graphics module, creates the list
// "SCROLL2D", makes all ten scrolls idle, finds scroll[10] in the script's globals, chooses the routines for
// the depth.
void RVK_mod_scroll2D_init();

// Once per frame, before the host draws its lists: schedules the visible scrolls, unless the host is
// suspended.
void RVK_mod_scroll2D_frame();

// After a change of video mode: re-aims the scrolls that draw on the screen, stops all when the host's reset
// flag is set, chooses the routines for the depth. Running scrolls get buffers of the new depth when next
// used.
void RVK_mod_scroll2D_update();

// At shutdown: frees the buffers.
void RVK_mod_scroll2D_release();

}  // extern "C"
#pragma GCC visibility pop
