// The version as a text that `strings` finds in the file.
#include "module/contract/host_records.h"

// Nothing reads it: kept against the compiler, and against a linker that drops unused sections.
#ifdef __ELF__
[[gnu::used, gnu::retain]]
#else
[[gnu::used]]
#endif
static const char version_text[] = "RVK_mod_scroll2D " RVK_MOD_SCROLL2D_VERSION;
