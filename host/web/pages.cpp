#include "host/pages.h"

#include <cstring>
#include <new>

namespace host {
namespace {

constexpr std::align_val_t page{4096};

}  // namespace

// Memory of WebAssembly can always be read and written. What lies around a block is its own all the same, and
// a write into its slack is seen.

std::size_t page_size() {
    return static_cast<std::size_t>(page);
}

std::byte* reserve_pages(std::size_t bytes) {
    return static_cast<std::byte*>(operator new(bytes, page, std::nothrow));
}

bool open_pages(std::byte* first, std::size_t bytes) {
    std::memset(first, 0, bytes);
    return true;
}

void release_pages(std::byte* reserved, std::size_t) noexcept {
    operator delete(reserved, page);
}

}  // namespace host
