#include "player/common/system_file.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace player {

std::FILE* open_new(const std::string& path) {
    const int file =
        _open(path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    return file < 0 ? nullptr : _fdopen(file, "w+b");
}

bool is_writable(const std::string& path) {
    constexpr int for_writing = 2;
    return _access(path.c_str(), for_writing) == 0;
}

}  // namespace player
