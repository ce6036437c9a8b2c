#include "tests/system.h"

#include <windows.h>

#include <cstdlib>
#include <string>

namespace tests {

bool is_readable(const std::byte* at) {
    MEMORY_BASIC_INFORMATION pages{};
    return VirtualQuery(at, &pages, sizeof pages) != 0 && pages.State == MEM_COMMIT &&
           pages.Protect != PAGE_NOACCESS;
}

void set_environment(const char* name, const char* value) {
    _putenv((std::string(name) + "=" + value).c_str());
}

}  // namespace tests
