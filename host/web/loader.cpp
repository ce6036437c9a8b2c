#include "host/loader.h"

#include <algorithm>
#include <string>

#include "host/error.h"
#include "host/linked_modules.h"

namespace host {

// The handle of a module is its first symbol. A module that was closed keeps its variables.
LibraryHandle open_library(const std::filesystem::path& path) {
    const std::string name = path.stem().string();
    for (const LinkedSymbol& symbol : linked_symbols)
        if (symbol.module == name) return const_cast<LinkedSymbol*>(&symbol);
    throw Error("there is no module " + name + " in this program");
}

void close_library(LibraryHandle) noexcept {}

void* find_symbol(LibraryHandle library, const char* name) {
    const std::string module = static_cast<const LinkedSymbol*>(library)->module;
    for (const LinkedSymbol& symbol : linked_symbols)
        if (symbol.module == module && symbol.name == std::string(name)) return symbol.address;
    return nullptr;
}

}  // namespace host
