// Which script somebody means who names one on the command line.
#pragma once

#include <filesystem>
#include <string>

namespace player {

// The names of the scripts right in a folder, each with what its opening comment says first, as lines of up
// to 100 columns.
std::string list_of(const std::filesystem::path& demos);

// A path as it is, with ".lua" added, or the end of the path of exactly one demo ("main", "demos/main",
// "guide/sky"). `demos` may be empty. Errors: std::runtime_error that names the closest script there is.
std::string find_script(const std::string& asked, const std::filesystem::path& demos);

}  // namespace player
