#include "host/module_library.h"

#include <dlfcn.h>

#include "host/error.h"

namespace host {

ModuleLibrary::ModuleLibrary(const std::filesystem::path& path) : path_(path.string()) {
    if (!std::filesystem::is_regular_file(path)) throw Error("there is no module file " + path_);
    // An absolute path, since the loader looks for a bare name elsewhere than in the current folder.
    handle_ = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) {
        const char* reason = dlerror();
        throw Error("cannot load " + path_ + ": " + (reason != nullptr ? reason : "unknown reason"));
    }
}

ModuleLibrary::~ModuleLibrary() {
    dlclose(handle_);
}

void* ModuleLibrary::find(const std::string& symbol) const {
    return dlsym(handle_, symbol.c_str());
}

void* ModuleLibrary::get(const std::string& symbol) const {
    void* address = find(symbol);
    if (address == nullptr) throw Error(path_ + " does not export " + symbol);
    return address;
}

}  // namespace host
