// What the standard library does not say about files. Each platform has its own: posix/system_file.cpp,
// windows/system_file.cpp.
#pragma once

#include <cstdio>
#include <string>

namespace player {

// A file that was not there before, open for reading and writing bytes, not inherited by child processes;
// null, with errno set: it cannot be made, EEXIST: there is one of that name.
std::FILE* open_new(const std::string& path);
// Whether a file that is there may be written; if not, errno says why.
bool is_writable(const std::string& path);

}  // namespace player
