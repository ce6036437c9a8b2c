#include "host/pages.h"

#include <sys/mman.h>
#include <unistd.h>

namespace host {

std::size_t page_size() {
    static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

std::byte* reserve_pages(std::size_t bytes) {
    void* const pages = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : static_cast<std::byte*>(pages);
}

bool open_pages(std::byte* first, std::size_t bytes) {
    return mprotect(first, bytes, PROT_READ | PROT_WRITE) == 0;
}

void release_pages(std::byte* reserved, std::size_t bytes) noexcept {
    munmap(reserved, bytes);
}

}  // namespace host
