#include "host/pages.h"

#include <windows.h>

namespace host {

std::size_t page_size() {
    static const std::size_t size = [] {
        SYSTEM_INFO system{};
        GetSystemInfo(&system);
        return system.dwPageSize;
    }();
    return size;
}

std::byte* reserve_pages(std::size_t bytes) {
    return static_cast<std::byte*>(VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS));
}

bool open_pages(std::byte* first, std::size_t bytes) {
    return VirtualAlloc(first, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

void release_pages(std::byte* reserved, std::size_t /*bytes*/) noexcept {
    VirtualFree(reserved, 0, MEM_RELEASE);
}

}  // namespace host
