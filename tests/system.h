// What tests ask of the system. Each platform has its own: posix/system.cpp, windows/system.cpp.
#pragma once

#include <cstddef>

namespace tests {

// Whether a byte can be read; one that cannot does no harm.
bool is_readable(const std::byte* at);
// A variable of the environment of this process, as libraries find it by getenv; "": there is none.
void set_environment(const char* name, const char* value);

}  // namespace tests
