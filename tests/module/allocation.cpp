#include "tests/module/allocation.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "tests/module/imports.h"

namespace tests {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr host::Fence kFence = host::Fence::none;  // the sanitizer fences the heap on both sides
#else
constexpr host::Fence kFence = host::Fence::after;
#endif

}  // namespace

ModuleAllocator* ModuleAllocator::attached_ = nullptr;

ModuleAllocator::ModuleAllocator() {
    REQUIRE((attached_ == nullptr));
    attached_ = this;
}

ModuleAllocator::~ModuleAllocator() {
    attached_ = nullptr;
}

void ModuleAllocator::attach(const char* path) {
    REQUIRE(redirect_import(path, "malloc", reinterpret_cast<std::uintptr_t>(&allocate)) >= 1);
    REQUIRE(redirect_import(path, "free", reinterpret_cast<std::uintptr_t>(&release)) >= 1);
}

void ModuleAllocator::fail(int nth, bool for_good) {
    fail_at_ = nth;
    for_good_ = for_good;
    made = 0;
}

// New blocks hold anything but zeros, so that a picture drawn from a buffer nobody filled shows.
void* ModuleAllocator::allocate(std::size_t bytes) {
    ModuleAllocator& self = *attached_;
    ++self.made;
    self.largest = std::max(self.largest, bytes);
    if (self.fail_at_ != 0 && (self.made == self.fail_at_ || (self.for_good_ && self.made > self.fail_at_)))
        return nullptr;
    host::Memory block(bytes, kFence);
    void* const address = block.data();
    std::memset(address, 0xEE, bytes);
    self.live.emplace(address, std::move(block));
    return address;
}

void ModuleAllocator::release(void* address) {
    if (address == nullptr) return;
    const auto held = attached_->live.find(address);
    if (held == attached_->live.end()) {
        ++attached_->bad_frees;
        return;
    }
    attached_->freed.push_back(held->second.size());
    attached_->live.erase(held);
}

}  // namespace tests
