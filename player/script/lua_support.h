// What all bindings share: tables of functions, and arguments with clear errors.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "player/script/script.h"

namespace player {

inline constexpr const char* process_type = "process";

// The game of the script that a Lua state belongs to.
inline Game& game_of(lua_State* L) {
    return Script::of(L).game;
}

// A Lua function of the player. The number of arguments is checked before `run`, and exceptions of `run`
// become Lua errors with the caller's file and line.
struct Binding {
    const char* name;
    int least;  // number of arguments
    int most;   // any_number: no limit
    lua_CFunction run;
};
inline constexpr int any_number = 1000;

// Binds as globals. `bindings` must live as long as the state.
void bind(lua_State* L, std::span<const Binding> bindings);

// process_bindings.cpp: processes and their fields
void bind_processes(lua_State* L);
// module_bindings.cpp: functions, constants and structures of the loaded module
void bind_module(lua_State* L);
// map_bindings.cpp: maps, drawing, colours
void bind_maps(lua_State* L);
// screen_bindings.cpp: video mode, regions, text, keyboard, the game itself
void bind_screen(lua_State* L);

// ---- Arguments. All raise a Lua error that tells what was expected.

// The value as the engine takes it: an integer, a number (floored), a boolean, a process (its id, 0 once it
// has ended). `what` names the value in the error.
std::int32_t engine_value(lua_State* L, int index, const std::string& what);
inline int integer_argument(lua_State* L, int index) {
    return engine_value(L, index, "argument " + std::to_string(index));
}
// An integer argument from `least` to `most`, or `fallback` when it is absent.
int ranged_argument(lua_State* L, int index, int least, int most, int fallback);

// "#rrggbb", "#rrggbbaa".
Rgba parse_colour(lua_State* L, const std::string& text);
// A pixel value, or a colour text; `fallback` (a colour text) when it is absent.
std::uint32_t pixel_argument(lua_State* L, int index, const char* fallback);

// The process at an index, alive or not.
Process& process_argument(lua_State* L, int index);

}  // namespace player
