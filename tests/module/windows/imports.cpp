#include "tests/module/imports.h"

#include <windows.h>

#include <cstring>
#include <filesystem>

namespace tests {
namespace {

// What stands so many bytes from the beginning of a loaded library.
template <class What>
What* at(HMODULE library, DWORD offset) {
    return reinterpret_cast<What*>(reinterpret_cast<std::uintptr_t>(library) + offset);
}

bool write(IMAGE_THUNK_DATA& place, std::uintptr_t to) {
    DWORD before = 0;
    if (VirtualProtect(&place, sizeof place, PAGE_READWRITE, &before) == 0) return false;
    place.u1.Function = to;
    return VirtualProtect(&place, sizeof place, before, &before) != 0;
}

}  // namespace

int redirect_import(const char* path, const char* name, std::uintptr_t to) {
    const HMODULE library = GetModuleHandleW(std::filesystem::absolute(path).make_preferred().c_str());
    if (library == nullptr) return 0;
    const auto& headers = *at<IMAGE_NT_HEADERS>(library, at<IMAGE_DOS_HEADER>(library, 0)->e_lfanew);
    const auto& imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    int found = 0;
    for (auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(library, imports.VirtualAddress); from->Name != 0; ++from) {
        auto* names = at<IMAGE_THUNK_DATA>(library, from->OriginalFirstThunk);
        auto* addresses = at<IMAGE_THUNK_DATA>(library, from->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* import = at<IMAGE_IMPORT_BY_NAME>(library, names->u1.AddressOfData);
            if (std::strcmp(import->Name, name) == 0 && write(*addresses, to)) ++found;
        }
    }
    return found;
}

}  // namespace tests
