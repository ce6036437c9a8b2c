#include "tests/module/imports.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <span>
#include <utility>

namespace tests {
namespace {

// An entry of a loaded object's dynamic section; the loader has made addresses absolute.
template <class Value>
Value entry_of(const link_map& object, Elf32_Sword tag) {
    for (const Elf32_Dyn* d = object.l_ld; d->d_tag != DT_NULL; ++d)
        if (d->d_tag == tag) return reinterpret_cast<Value>(d->d_un.d_ptr);
    return {};
}

int redirect(const link_map& object, const char* name, std::uintptr_t to) {
    const auto* symbols = entry_of<const Elf32_Sym*>(object, DT_SYMTAB);
    const auto* strings = entry_of<const char*>(object, DT_STRTAB);
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    int found = 0;
    for (const auto& [start, bytes] : {std::pair{DT_REL, DT_RELSZ}, {DT_JMPREL, DT_PLTRELSZ}}) {
        const std::span table(entry_of<const Elf32_Rel*>(object, start),
                              entry_of<std::uintptr_t>(object, bytes) / sizeof(Elf32_Rel));
        for (const Elf32_Rel& import : table) {
            if (std::strcmp(strings + symbols[ELF32_R_SYM(import.r_info)].st_name, name) != 0) continue;
            const std::uintptr_t place = object.l_addr + import.r_offset;
            if (mprotect(reinterpret_cast<void*>(place & ~(page - 1)), page, PROT_READ | PROT_WRITE) != 0)
                continue;
            std::memcpy(reinterpret_cast<void*>(place), &to, sizeof to);
            ++found;
        }
    }
    return found;
}

}  // namespace

int redirect_import(const char* library, const char* name, std::uintptr_t to) {
    void* const handle = dlopen(library, RTLD_NOLOAD | RTLD_LAZY);
    if (handle == nullptr) return 0;
    const int found = redirect(*static_cast<const link_map*>(handle), name, to);
    dlclose(handle);
    return found;
}

}  // namespace tests
