#include "player/streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace player {

bool open_missing_streams() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(number, F_GETFD) < 0 && open("/dev/null", O_RDWR) != number) return false;
    return true;
}

}  // namespace player
