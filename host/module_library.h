// A module as the system's loader holds it.
#pragma once

#include <filesystem>
#include <string>

#include "host/loader.h"

namespace host {

class ModuleLibrary {
  public:
    // Errors: Error for a missing file or one that the loader refuses, with the loader's reason.
    explicit ModuleLibrary(const std::filesystem::path& path);
    ModuleLibrary(const ModuleLibrary&) = delete;
    ModuleLibrary& operator=(const ModuleLibrary&) = delete;
    ~ModuleLibrary();

    [[nodiscard]] void* find(const std::string& symbol) const;  // null: none
    // Errors: Error for a symbol that is not there.
    [[nodiscard]] void* get(const std::string& symbol) const;

  private:
    std::string path_;
    LibraryHandle handle_;
};

}  // namespace host
