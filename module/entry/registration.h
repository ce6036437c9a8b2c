// The two symbols that a host looks for in the module, besides `rvkre`. Everything that scripts can see is
// declared through the first.
#pragma once

#include <cstdint>

#include "module/contract/host_records.h"

#pragma GCC visibility push(default)  // seen by the host; module/entry/exports.map lists them
extern "C" {

// Registers constants, script globals, script functions and hooks, in this order, and fetches the host's
// runtime. Uses no slot of the runtime. Returns 1.
std::int32_t RVK_mod_scroll2D_MainLibraryExports(const ExportRegistrar* registrar);

// The modules that must be loaded and registered first; ends with null.
extern const char* RVK_mod_scroll2D_MainLibraryDependencies[];

}  // extern "C"
#pragma GCC visibility pop
