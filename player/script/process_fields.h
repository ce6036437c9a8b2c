// The fields of a process, as scripts read and write them.
#pragma once

#include <string>

#include "player/script/lua_support.h"

namespace player {

// Sets a field of the process at `self` to the value at `value`; both are absolute indices. Throws Mistake
// for a field that there is not, a value that does not fit it, and a process that has ended.
void set_process_field(lua_State* L, int self, const std::string& name, int value);
// Pushes the value of a field of the process at `self`. Throws Mistake likewise; `id`, `data` and
// `graph_table` outlast the process.
void push_process_field(lua_State* L, int self, const std::string& name);

}  // namespace player
