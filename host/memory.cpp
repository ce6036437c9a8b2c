#include "host/memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "host/error.h"
#include "host/pages.h"

namespace host {

namespace {

constexpr std::byte slack_byte{0xD1};

[[noreturn]] void throw_no_memory(std::size_t bytes) {
    throw Error("no memory for a block of " + std::to_string(bytes) + " bytes");
}

}  // namespace

//  Fence::after    | unreadable page | slack, then the block | unreadable page |
//  Fence::before   | unreadable page | the block, then slack | unreadable page |
Memory::Memory(std::size_t bytes, Fence fence) : size_(bytes) {
    if (bytes > SIZE_MAX / 2) throw_no_memory(bytes);
    if (fence == Fence::none) {
        heap_.reset(new (std::nothrow) std::byte[bytes]());
        if (!heap_) throw_no_memory(bytes);
        data_ = heap_.get();
        return;
    }
    const std::size_t page = page_size();
    const std::size_t inner = std::max<std::size_t>(1, (bytes + page - 1) / page) * page;
    mapping_size_ = inner + 2 * page;
    mapping_ = reserve_pages(mapping_size_);
    if (mapping_ == nullptr) throw_no_memory(bytes);
    std::byte* first = mapping_ + page;
    if (!open_pages(first, inner)) {
        release_pages(mapping_, mapping_size_);
        throw_no_memory(bytes);
    }
    data_ = fence == Fence::after ? first + (inner - bytes) : first;
    std::fill(first, data_, slack_byte);
    std::fill(data_ + bytes, first + inner, slack_byte);
}

Memory::Memory(Memory&& other) noexcept {
    *this = std::move(other);
}

Memory& Memory::operator=(Memory&& other) noexcept {
    std::swap(heap_, other.heap_);
    std::swap(mapping_, other.mapping_);
    std::swap(mapping_size_, other.mapping_size_);
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}

Memory::~Memory() {
    if (mapping_ != nullptr) release_pages(mapping_, mapping_size_);
}

bool Memory::slack_untouched() const {
    if (mapping_ == nullptr) return true;
    const std::byte* first = mapping_ + page_size();
    const std::byte* last = mapping_ + mapping_size_ - page_size();
    const auto intact = [](std::byte b) { return b == slack_byte; };
    return std::all_of(first, static_cast<const std::byte*>(data_), intact) &&
           std::all_of(static_cast<const std::byte*>(data_ + size_), last, intact);
}

}  // namespace host
