#include "host/loader.h"

#include <dlfcn.h>

#include "host/error.h"

namespace host {

LibraryHandle open_library(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path)) throw Error("there is no module file " + path.string());
    // An absolute path, since the loader looks for a bare name elsewhere than in the current folder.
    void* const library = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr) return library;
    const char* reason = dlerror();
    throw Error("cannot load " + path.string() + ": " + (reason != nullptr ? reason : "unknown reason"));
}

void close_library(LibraryHandle library) noexcept {
    dlclose(library);
}

void* find_symbol(LibraryHandle library, const char* name) {
    return dlsym(library, name);
}

}  // namespace host
