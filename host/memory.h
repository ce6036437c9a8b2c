// Blocks of memory that can be fenced with unreadable pages.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace host {

// Where a block lies between its two unreadable pages. One byte past the flush side faults at once.
enum class Fence {
    none,    // plain heap memory
    after,   // the last byte of the block is the last readable one
    before,  // the first byte of the block is the first readable one
};

// A zeroed block of fixed size. A fenced block fills the rest of its pages, the slack on the side that is not
// flush, with a pattern; slack_untouched() tells whether it is still there.
class Memory {
  public:
    Memory() = default;
    // Errors: Error when the system has no memory to give.
    Memory(std::size_t bytes, Fence fence);
    Memory(Memory&& other) noexcept;
    Memory& operator=(Memory&& other) noexcept;
    ~Memory();

    [[nodiscard]] std::byte* data() { return data_; }
    [[nodiscard]] const std::byte* data() const { return data_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::span<std::byte> bytes() { return {data_, size_}; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return {data_, size_}; }
    [[nodiscard]] bool slack_untouched() const;

  private:
    std::unique_ptr<std::byte[]> heap_;
    std::byte* mapping_ = nullptr;  // first of the two unreadable pages; null: heap memory
    std::size_t mapping_size_ = 0;
    std::byte* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace host
