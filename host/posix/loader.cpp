#include "host/loader.h"

#include <dlfcn.h>

#include "host/library_file.h"

namespace host {

LibraryHandle open_library(const std::filesystem::path& path) {
    require_library_file(path);
    // An absolute path, since the loader looks for a bare name elsewhere than in the current folder.
    void* const library = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr) return library;
    const char* reason = dlerror();
    refuse_library(path, reason != nullptr ? reason : "unknown reason");
}

void close_library(LibraryHandle library) noexcept {
    dlclose(library);
}

void* find_symbol(LibraryHandle library, const char* name) {
    return dlsym(library, name);
}

}  // namespace host
