// The system's loader. Each platform has its own: posix/loader.cpp, windows/loader.cpp.
#pragma once

#include <filesystem>

namespace host {

// What a loaded library is to the system; never null.
using LibraryHandle = void*;

// Errors: Error for a missing file, one of another platform, or one that the loader refuses, with its reason.
[[nodiscard]] LibraryHandle open_library(const std::filesystem::path& path);
void close_library(LibraryHandle library) noexcept;
// The address of what a library exports; null: it does not.
[[nodiscard]] void* find_symbol(LibraryHandle library, const char* name);

}  // namespace host
