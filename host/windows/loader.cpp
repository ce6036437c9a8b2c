#include "host/loader.h"

#include <windows.h>

#include <system_error>

#include "host/library_file.h"

namespace host {

LibraryHandle open_library(const std::filesystem::path& path) {
    require_library_file(path);
    // An absolute path, since the loader looks for a bare name elsewhere than in the current folder; it knows
    // no other slashes than its own.
    const HMODULE library = LoadLibraryW(std::filesystem::absolute(path).make_preferred().c_str());
    if (library != nullptr) return library;
    const auto reason = static_cast<int>(GetLastError());
    refuse_library(path, std::system_category().message(reason));
}

void close_library(LibraryHandle library) noexcept {
    FreeLibrary(static_cast<HMODULE>(library));
}

void* find_symbol(LibraryHandle library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace host
