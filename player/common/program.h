// The program itself, as the system sees it. Each platform has its own: posix/program.cpp,
// windows/program.cpp.
#pragma once

#include <string>

namespace player {

// The number of the running process, which no other has now.
int process_number();
// Where the module is looked for unless somebody names another place.
std::string module_beside_program();

}  // namespace player
