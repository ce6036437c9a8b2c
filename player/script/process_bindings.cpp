// Processes: process, frame, kill, exists, processes, and what one can do with a process itself.
#include "player/script/process_fields.h"

namespace player {
namespace {

int get_field(lua_State* L) {
    push_process_field(L, 1, luaL_tolstring(L, 2, nullptr));
    return 1;
}

int set_field(lua_State* L) {
    set_process_field(L, 1, luaL_tolstring(L, 2, nullptr), 3);
    return 0;
}

int describe(lua_State* L) {
    const Process& process = process_argument(L, 1);
    lua_pushfstring(L, "process %d%s", process.serial, process.alive ? "" : " (ended)");
    return 1;
}

// The index of the fields among the arguments; what stands there may be nil after a function.
int check_process_arguments(lua_State* L) {
    const bool scripted = lua_isfunction(L, 1);
    const int fields = scripted ? 2 : 1;
    if (scripted && lua_isnone(L, fields)) lua_pushnil(L);
    const bool fitting = lua_istable(L, fields) || (scripted && lua_isnil(L, fields));
    if (!fitting)
        throw Mistake(std::string("a function, a table of fields, or both were expected, got ") +
                      luaL_typename(L, fields));
    if (scripted || lua_isnone(L, 2)) return fields;
    throw Mistake(lua_isfunction(L, 2) ? "the function comes first, then the table of fields"
                                       : "what follows the fields is for a function, and there is none");
}

// process(fn [, fields [, ...]]) or process(fields)
int make_process(lua_State* L) {
    const int fields = check_process_arguments(L);
    Script& script = Script::of(L);
    Process& process = script.make_process(L, fields == 2 ? 1 : 0, fields + 1);
    const int self = lua_gettop(L);
    if (!lua_istable(L, fields)) return 1;
    try {
        for (lua_pushnil(L); lua_next(L, fields); lua_settop(L, self + 1)) {
            if (lua_type(L, self + 1) != LUA_TSTRING) throw Mistake("field names are texts");
            set_process_field(L, self, lua_tostring(L, self + 1), self + 2);
        }
    } catch (...) {
        script.end_process(process);
        throw;
    }
    return 1;
}

// frame([n])
int end_turn(lua_State* L) {
    const int frames = ranged_argument(L, 1, 1, 1'000'000'000, 1);
    const Process* running = Script::of(L).running();
    if (!running || L != running->thread || !lua_isyieldable(L))
        throw Mistake(
            "it ends the turn of a process: call it in the process's own function, not in another coroutine");
    lua_pushinteger(L, frames);
    return ending_turn(1);
}

int kill(lua_State* L) {
    Script& script = Script::of(L);
    script.end_process(process_argument(L, 1));
    return script.return_or_end_turn(L, 0);
}

int exists(lua_State* L) {
    lua_pushboolean(L, !lua_isnil(L, 1) && game_of(L).engine.processes().exists(integer_argument(L, 1)));
    return 1;
}

int list_processes(lua_State* L) {
    Script& script = Script::of(L);
    const bool all = lua_isnoneornil(L, 1);
    const std::int32_t type = all ? 0 : integer_argument(L, 1);
    lua_newtable(L);
    lua_Integer count = 0;
    for (const Process* process : script.living_processes()) {
        if (!all && script.game.engine.processes().type_of(process->id) != type) continue;
        Script::push_process(L, *process);
        lua_seti(L, -2, ++count);
    }
    return 1;
}

constexpr Binding bindings[] = {
    {"process", 1, any_number, make_process},
    {"frame", 0, 1, end_turn},
    {"kill", 1, 1, kill},
    {"exists", 1, 1, exists},
    {"processes", 0, 1, list_processes},
};

constexpr Binding metamethods[] = {
    {"__index", 2, 2, get_field},
    {"__newindex", 3, 3, set_field},
    {"__tostring", 1, 2, describe},
};

}  // namespace

void bind_processes(lua_State* L) {
    luaL_newmetatable(L, process_type);
    set_fields(L, metamethods);
    lua_pop(L, 1);
    bind(L, bindings);
    lua_pushinteger(L, host::screen_coordinates);
    lua_setglobal(L, "c_screen");
}

}  // namespace player
