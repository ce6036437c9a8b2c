#include "player/common/system_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace player {

std::FILE* open_new(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_LARGEFILE, 0666);
    return file < 0 ? nullptr : fdopen(file, "w+b");
}

bool is_writable(const std::string& path) {
    return access(path.c_str(), W_OK) == 0;
}

}  // namespace player
