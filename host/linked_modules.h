// Modules that are part of the program, where there is no loader, as in a browser.
#pragma once

#include <span>

namespace host {

struct LinkedSymbol {
    const char* module;  // its name, without folder and ending
    const char* name;
    void* address;
};

// Of all modules that a program has. The program itself lists them.
extern const std::span<const LinkedSymbol> linked_symbols;

}  // namespace host
