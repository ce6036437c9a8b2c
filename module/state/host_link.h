// What ties the module to its host.
#pragma once

#include "module/contract/host_records.h"

// The way to the host; set at the end of registration.
extern "C" [[gnu::visibility("default")]] HostRuntime* rvkre;

namespace scroll2d {

extern ScrollSystemInterface scrollSystem;  // the services for the graphics module
extern void* scroll2D_blitlist;             // the module's own list, "SCROLL2D"

}  // namespace scroll2d
