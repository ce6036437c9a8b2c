#include "player/common/program.h"

#include <unistd.h>

#include <filesystem>

namespace player {

int process_number() {
    return getpid();
}

std::string module_beside_program() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path() / "RVK_mod_scroll2D.so").string();
}

}  // namespace player
