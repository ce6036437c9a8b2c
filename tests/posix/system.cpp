#include "tests/system.h"

#include <unistd.h>

#include <cstdlib>

namespace tests {

// The kernel refuses to copy a byte that cannot be read.
bool is_readable(const std::byte* at) {
    static int ends[2];
    static const int opened = pipe(ends);
    char copy = 0;
    return opened == 0 && write(ends[1], at, 1) == 1 && read(ends[0], &copy, 1) == 1;
}

void set_environment(const char* name, const char* value) {
    if (*value != '\0')
        setenv(name, value, 1);
    else
        unsetenv(name);
}

}  // namespace tests
