/*
 * What all bindings share: the one way from Lua into C++, and arguments with clear errors.
 *
 * A binding reports what the script's author did wrong by throwing Mistake, or any std::exception. It becomes
 * a Lua error with file and line and the name of the function.
 */
#pragma once

#include <climits>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "player/script/script.h"

namespace player {

inline constexpr const char* process_type = "process";

// The game of the script that a Lua state belongs to.
inline Game& game_of(lua_State* L) {
    return Script::of(L).game;
}

// What a script's author did wrong.
struct Mistake : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A function of the player for Lua. The number of arguments is checked before `run`.
struct Binding {
    const char* name;  // stands before the text of errors, unless it is empty or a metamethod's
    int least;         // number of arguments
    int most;          // any_number: no limit
    lua_CFunction run;
};
inline constexpr int any_number = INT_MAX;

// What a binding returns to end the turn that runs, with so many values from the top for whoever gave it; and
// the number of values again. It must not yield itself.
constexpr int ending_turn(int results) {
    return -1 - results;
}

// Pushes a binding, which must live as long as the state. It takes the topmost `values` values with it, as
// its upvalues bound_value(1) and so on. No C++ function gets into Lua in another way.
void push_binding(lua_State* L, const Binding& binding, int values = 0);
inline int bound_value(int number) {
    return lua_upvalueindex(number + 1);
}
// Binds as fields of the table at the top.
void set_fields(lua_State* L, std::span<const Binding> bindings);
// Binds as globals.
void bind(lua_State* L, std::span<const Binding> bindings);

// process_bindings.cpp: processes and their fields
void bind_processes(lua_State* L);
// module_bindings.cpp: functions, constants and structures of the loaded module
void bind_module(lua_State* L);
// map_bindings.cpp: maps, drawing, colours
void bind_maps(lua_State* L);
// screen_bindings.cpp: video mode, regions, text, keyboard, the game itself
void bind_screen(lua_State* L);
// globals.cpp: warnings of globals that were never defined. To be called when all others are there.
void guard_globals(lua_State* L);
// The closest global to a name that is none, as " (did you mean "speed"?)"; empty: none is close.
std::string closest_global(lua_State* L, const std::string& name);

// ---- Arguments. All throw Mistake, which tells what was expected.

// The value as the engine takes it: an integer, a number (floored), a boolean, a process (its id, 0 once it
// has ended). Nothing when it is none of these or does not fit 32 bits.
std::optional<std::int32_t> engine_value(lua_State* L, int index);
// "speed: a number was expected, got nil", about a value that is not what `wanted` says; without it, about
// one that is not for the engine.
[[noreturn]] void refuse(lua_State* L, int index, const std::string& what, const std::string& wanted = {});

std::int32_t integer_argument(lua_State* L, int index);
// An integer argument from `least` to `most`, or `fallback` when it is absent.
int ranged_argument(lua_State* L, int index, int least, int most, std::optional<int> fallback = {});
std::string text_argument(lua_State* L, int index);
// One that is to be drawn: not too long for that.
std::string drawn_text_argument(lua_State* L, int index);
// The process at an index, alive or not.
Process& process_argument(lua_State* L, int index);

// "#rrggbb", "#rrggbbaa".
Rgba parse_colour(const std::string& text);
// A pixel value, or a colour text; `fallback` (a colour text) when it is absent.
std::uint32_t pixel_argument(lua_State* L, int index, const char* fallback = nullptr);

// "1 argument", "6 or 7 arguments".
std::string arguments_text(const std::string& how_many);

// ---- Results

int push_pair(lua_State* L, lua_Integer first, lua_Integer second);
int push_nil(lua_State* L);

}  // namespace player
