#include "host/loader.h"

#include <windows.h>

#include <system_error>

#include "host/error.h"

namespace host {

LibraryHandle open_library(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path)) throw Error("there is no module file " + path.string());
    // An absolute path, since the loader looks for a bare name elsewhere than in the current folder.
    const HMODULE library = LoadLibraryW(std::filesystem::absolute(path).c_str());
    if (library != nullptr) return library;
    const auto reason = static_cast<int>(GetLastError());
    throw Error("cannot load " + path.string() + ": " + std::system_category().message(reason));
}

void close_library(LibraryHandle library) noexcept {
    FreeLibrary(static_cast<HMODULE>(library));
}

void* find_symbol(LibraryHandle library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace host
