#include "tests/module/imports.h"

#include <cstdlib>
#include <string_view>

namespace tests {
namespace {

auto allocate = std::malloc;
auto release = std::free;

}  // namespace

// Where module_memory.h leads the module's calls.
extern "C" void* module_malloc(std::size_t bytes) {
    return allocate(bytes);
}
extern "C" void module_free(void* block) {
    release(block);
}

int redirect_import(const char*, const char* name, std::uintptr_t to) {
    if (std::string_view(name) == "malloc") return allocate = reinterpret_cast<decltype(allocate)>(to), 1;
    if (std::string_view(name) == "free") return release = reinterpret_cast<decltype(release)>(to), 1;
    return 0;
}

}  // namespace tests
