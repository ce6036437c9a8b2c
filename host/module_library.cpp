#include "host/module_library.h"

#include "host/error.h"

namespace host {

ModuleLibrary::ModuleLibrary(const std::filesystem::path& path)
    : path_(path.string()), handle_(open_library(path)) {}

ModuleLibrary::~ModuleLibrary() {
    close_library(handle_);
}

void* ModuleLibrary::find(const std::string& symbol) const {
    return find_symbol(handle_, symbol.c_str());
}

void* ModuleLibrary::get(const std::string& symbol) const {
    void* address = find(symbol);
    if (address == nullptr) throw Error(path_ + " does not export " + symbol);
    return address;
}

}  // namespace host
