// The addresses by which a loaded library calls others. Each format of files has its own: posix/imports.cpp,
// windows/imports.cpp.
#pragma once

#include <cstdint>

namespace tests {

// Writes an address where every import of that name stands in a loaded library, also in a page that is
// read-only once loaded. Returns how many there were; 0 too when the library is not loaded.
int redirect_import(const char* library, const char* name, std::uintptr_t to);

}  // namespace tests
