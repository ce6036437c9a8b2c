// The version as a text that `strings` finds in the file. Nothing reads it: the linker is told to keep it
// (cmake/identity.cmake).
#include "module/contract/host_records.h"

extern "C" const char rvk_version_text[] = "RVK_mod_scroll2D " RVK_MOD_SCROLL2D_VERSION;
