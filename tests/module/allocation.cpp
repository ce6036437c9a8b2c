#include "tests/module/allocation.h"

#include <dlfcn.h>
#include <doctest/doctest.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace tests {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr host::Fence kFence = host::Fence::none;  // the sanitizer fences the heap on both sides
#else
constexpr host::Fence kFence = host::Fence::after;
#endif

// An entry of a loaded object's dynamic section; the loader has made addresses absolute.
template <class Value>
Value entry_of(const link_map& object, Elf32_Sword tag) {
    for (const Elf32_Dyn* d = object.l_ld; d->d_tag != DT_NULL; ++d)
        if (d->d_tag == tag) return reinterpret_cast<Value>(d->d_un.d_ptr);
    return {};
}

// Writes an address where every import of that name stands; some of these pages are read-only once loaded.
// Returns how many there were.
int redirect(const link_map& object, const std::string& name, std::uintptr_t to) {
    const auto* symbols = entry_of<const Elf32_Sym*>(object, DT_SYMTAB);
    const auto* strings = entry_of<const char*>(object, DT_STRTAB);
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    int found = 0;
    for (const auto& [start, bytes] : {std::pair{DT_REL, DT_RELSZ}, {DT_JMPREL, DT_PLTRELSZ}}) {
        const std::span table(entry_of<const Elf32_Rel*>(object, start),
                              entry_of<std::uintptr_t>(object, bytes) / sizeof(Elf32_Rel));
        for (const Elf32_Rel& import : table) {
            if (strings + symbols[ELF32_R_SYM(import.r_info)].st_name != name) continue;
            const std::uintptr_t place = object.l_addr + import.r_offset;
            REQUIRE(mprotect(reinterpret_cast<void*>(place & ~(page - 1)), page, PROT_READ | PROT_WRITE) ==
                    0);
            std::memcpy(reinterpret_cast<void*>(place), &to, sizeof to);
            ++found;
        }
    }
    return found;
}

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
    void* const handle = dlopen(path, RTLD_NOLOAD | RTLD_LAZY);
    REQUIRE((handle != nullptr));
    const auto& object = *static_cast<const link_map*>(handle);
    REQUIRE(redirect(object, "malloc", reinterpret_cast<std::uintptr_t>(&allocate)) >= 1);
    REQUIRE(redirect(object, "free", reinterpret_cast<std::uintptr_t>(&release)) >= 1);
    dlclose(handle);
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
