// The file of a library, for messages when it cannot be loaded.
#pragma once

#include <filesystem>
#include <string>

namespace host {

// Errors: Error when there is no such file.
void require_library_file(const std::filesystem::path& path);
// Always throws an Error: the reason of the loader, and what the file is made for where that is not what this
// program is made for.
[[noreturn]] void refuse_library(const std::filesystem::path& path, const std::string& reason);

}  // namespace host
