// Pages of memory, straight from the system. Each platform has its own: posix/pages.cpp, windows/pages.cpp.
#pragma once

#include <cstddef>

namespace host {

[[nodiscard]] std::size_t page_size();  // bytes
// Address space that can be neither read nor written, `bytes` of it, whole pages; null: there is none.
[[nodiscard]] std::byte* reserve_pages(std::size_t bytes);
// Makes pages of that readable and writable, full of zeros. False: no memory; they stay as they were.
[[nodiscard]] bool open_pages(std::byte* first, std::size_t bytes);
void release_pages(std::byte* reserved, std::size_t bytes) noexcept;

}  // namespace host
