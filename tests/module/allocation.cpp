#include "tests/module/allocation.h"

#include <dlfcn.h>
#include <doctest/doctest.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

namespace tests {
namespace {

// The tables of a loaded object that say which imported address stands where.
struct Imports {
    std::span<const Elf32_Rel> tables[2];  // data, calls
    const Elf32_Sym* symbols = nullptr;
    const char* strings = nullptr;
};

Imports imports_of(const link_map& object) {
    const Elf32_Rel* start[2]{};
    std::size_t bytes[2]{};
    Imports result;
    for (const Elf32_Dyn* d = object.l_ld; d->d_tag != DT_NULL; ++d) {
        // The loader has turned the addresses among these into absolute ones.
        const Elf32_Addr value = d->d_un.d_ptr;
        switch (d->d_tag) {
            case DT_REL:
                start[0] = reinterpret_cast<const Elf32_Rel*>(value);
                break;
            case DT_RELSZ:
                bytes[0] = value;
                break;
            case DT_JMPREL:
                start[1] = reinterpret_cast<const Elf32_Rel*>(value);
                break;
            case DT_PLTRELSZ:
                bytes[1] = value;
                break;
            case DT_SYMTAB:
                result.symbols = reinterpret_cast<const Elf32_Sym*>(value);
                break;
            case DT_STRTAB:
                result.strings = reinterpret_cast<const char*>(value);
                break;
        }
    }
    for (int i = 0; i < 2; ++i) result.tables[i] = {start[i], bytes[i] / sizeof(Elf32_Rel)};
    return result;
}

// Writes an address where every import of that name stands; some of these pages are read-only once loaded.
// Returns how many there were.
int redirect(const link_map& object, const char* name, std::uintptr_t to) {
    const Imports imports = imports_of(object);
    int found = 0;
    for (const auto& table : imports.tables) {
        for (const Elf32_Rel& entry : table) {
            const auto kind = ELF32_R_TYPE(entry.r_info);
            const Elf32_Sym& symbol = imports.symbols[ELF32_R_SYM(entry.r_info)];
            if (kind != R_386_JMP_SLOT && kind != R_386_GLOB_DAT) continue;
            if (std::strcmp(imports.strings + symbol.st_name, name) != 0) continue;
            const std::uintptr_t place = object.l_addr + entry.r_offset;
            const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
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
    for (const auto& [block, bytes] : live) std::free(block);
    attached_ = nullptr;
}

void ModuleAllocator::attach(const char* path) {
    REQUIRE((attached_ == this));
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
    self.largest = self.largest < bytes ? bytes : self.largest;
    if (self.fail_at_ != 0 && (self.made == self.fail_at_ || (self.for_good_ && self.made > self.fail_at_)))
        return nullptr;
    void* const block = std::malloc(bytes);
    if (block == nullptr) return nullptr;
    std::memset(block, 0xEE, bytes);
    self.live.emplace(block, bytes);
    return block;
}

void ModuleAllocator::release(void* block) {
    if (block == nullptr) return;
    const auto held = attached_->live.find(block);
    if (held == attached_->live.end()) {
        ++attached_->bad_frees;
        return;
    }
    attached_->freed.push_back(held->second);
    attached_->live.erase(held);
    std::free(block);
}

}  // namespace tests
