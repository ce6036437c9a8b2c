#include "player/common/program.h"

#include <windows.h>

#include <filesystem>

namespace player {

int process_number() {
    return static_cast<int>(GetCurrentProcessId());
}

std::string module_beside_program() {
    std::wstring program(32768, L'\0');  // the longest path there is
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return (std::filesystem::path(program).parent_path() / "RVK_mod_scroll2D.dll").string();
}

}  // namespace player
