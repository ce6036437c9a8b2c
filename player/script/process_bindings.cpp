// Processes: process, frame, kill, exists, processes, and the fields of a process.
#include <algorithm>
#include <iterator>

#include "player/common/names.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

constexpr std::int32_t opaque = 255;

// Fields that are plain words of the engine's record.
struct PlainField {
    const char* name;
    std::int32_t ProcessLocals::*word;
};

constexpr PlainField plain_fields[] = {
    {"x", &ProcessLocals::x},
    {"y", &ProcessLocals::y},
    {"z", &ProcessLocals::z},
    {"file", &ProcessLocals::file},
    {"graph", &ProcessLocals::graph},
    {"region", &ProcessLocals::region},
    {"resolution", &ProcessLocals::resolution},
    {"angle", &ProcessLocals::angle},
    {"size", &ProcessLocals::size},
    {"size_x", &ProcessLocals::size_x},
    {"size_y", &ProcessLocals::size_y},
    {"flags", &ProcessLocals::flags},
    {"status", &ProcessLocals::status},
    {"scroll_mask", &ProcessLocals::scroll_mask},
    {"scroll_mark", &ProcessLocals::scroll_mark},
    {"visible", &ProcessLocals::word33},
    {"silhouette", &ProcessLocals::word44},
};

const PlainField* plain_field(std::string_view name) {
    const auto* found = std::find_if(std::begin(plain_fields), std::end(plain_fields),
                                     [name](const PlainField& field) { return name == field.name; });
    return found == std::end(plain_fields) ? nullptr : found;
}

[[noreturn]] void unknown_field(lua_State* L, const std::string& name) {
    std::vector<std::string> names{"ctype", "graph_table", "alpha", "id", "data"};
    for (const PlainField& field : plain_fields) names.emplace_back(field.name);
    std::sort(names.begin(), names.end());
    luaL_error(L, "a process has no field \"%s\"%s", name.c_str(), suggestion(name, names).c_str());
    __builtin_unreachable();  // luaL_error does not return
}

ProcessLocals& locals_of(lua_State* L, const Process& process, const char* field) {
    if (!process.alive) luaL_error(L, "field \"%s\": this process has ended", field);
    return *game_of(L).engine.processes().find(process.id);
}

// Element 0 the count, then the codes, as the engine keeps it.
void set_graph_table(lua_State* L, const Process& process, int self, int value) {
    constexpr lua_Integer longest = 256;
    std::vector<std::int32_t> table;
    if (!lua_isnil(L, value)) {
        luaL_checktype(L, value, LUA_TTABLE);
        const lua_Integer count = luaL_len(L, value);
        if (count < 1 || count > longest)
            luaL_error(L, "graph_table: 1 to %d graph codes were expected, got %I", static_cast<int>(longest),
                       static_cast<LUAI_UACINT>(count));
        table.push_back(static_cast<std::int32_t>(count));
        for (lua_Integer i = 1; i <= count; ++i) {
            lua_geti(L, value, i);
            table.push_back(engine_value(L, -1, "graph_table[" + std::to_string(i) + "]"));
            lua_pop(L, 1);
        }
    }
    game_of(L).engine.processes().set_graph_table(process.id, table);
    lua_pushvalue(L, value);
    lua_setiuservalue(L, self, Process::graph_table_slot);
}

void note_picture(lua_State* L, const ProcessLocals& locals) {
    Game& game = game_of(L);
    if (locals.graph == 0 || game.engine.files().find_map(locals.file, locals.graph) != nullptr) return;
    luaL_where(L, 1);
    game.note_place(locals.file, locals.graph, lua_tostring(L, -1));
    lua_pop(L, 1);
}

// Sets a field of the process at `self` to the value at `value`; both are absolute indices.
void set_field(lua_State* L, int self, const std::string& name, int value) {
    const Process& process = process_argument(L, self);
    if (name == "data") {
        lua_pushvalue(L, value);
        lua_setiuservalue(L, self, Process::data_slot);
        return;
    }
    host::Processes& processes = game_of(L).engine.processes();
    if (const PlainField* field = plain_field(name)) {
        ProcessLocals& locals = locals_of(L, process, field->name);
        locals.*field->word = engine_value(L, value, name);
        if (name == "file" || name == "graph") note_picture(L, locals);
    } else if (name == "ctype") {
        locals_of(L, process, "ctype");
        processes.set_type(process.id, engine_value(L, value, name));
    } else if (name == "alpha") {
        ProcessLocals& locals = locals_of(L, process, "alpha");
        locals.word43 = opaque - std::clamp(engine_value(L, value, name), std::int32_t{0}, opaque);
    } else if (name == "graph_table") {
        locals_of(L, process, "graph_table");
        set_graph_table(L, process, self, value);
    } else if (name == "id") {
        luaL_error(L, "the field \"id\" cannot be written");
    } else {
        unknown_field(L, name);
    }
}

int get_field(lua_State* L) {
    const Process& process = process_argument(L, 1);
    const std::string name = luaL_checkstring(L, 2);
    if (const PlainField* field = plain_field(name)) {
        lua_pushinteger(L, locals_of(L, process, field->name).*field->word);
    } else if (name == "ctype") {
        locals_of(L, process, "ctype");
        lua_pushinteger(L, game_of(L).engine.processes().type_of(process.id));
    } else if (name == "alpha") {
        lua_pushinteger(L, opaque - locals_of(L, process, "alpha").word43);
    } else if (name == "id") {
        lua_pushinteger(L, process.id);
    } else if (name == "data") {
        lua_getiuservalue(L, 1, Process::data_slot);
    } else if (name == "graph_table") {
        lua_getiuservalue(L, 1, Process::graph_table_slot);
    } else {
        unknown_field(L, name);
    }
    return 1;
}

int set_field(lua_State* L) {
    set_field(L, 1, luaL_checkstring(L, 2), 3);
    return 0;
}

int describe(lua_State* L) {
    const Process& process = process_argument(L, 1);
    lua_pushfstring(L, "process %d%s", process.serial, process.alive ? "" : " (ended)");
    return 1;
}

// process(fn [, fields [, ...]]) or process(fields)
int make_process(lua_State* L) {
    const bool scripted = lua_isfunction(L, 1);
    const int fields = scripted ? 2 : 1;
    if (scripted && lua_isnone(L, fields)) lua_pushnil(L);
    if (scripted ? !lua_isnil(L, fields) && !lua_istable(L, fields) : !lua_istable(L, fields))
        luaL_error(L, "process: a function, a table of fields, or both were expected, got %s",
                   luaL_typename(L, fields));
    Script& script = Script::of(L);
    Process& process = script.make_process(L, scripted ? 1 : 0, fields + 1);
    const int self = lua_gettop(L);
    if (!lua_istable(L, fields)) return 1;
    try {
        for (lua_pushnil(L); lua_next(L, fields); lua_pop(L, 1)) {
            if (lua_type(L, -2) != LUA_TSTRING) luaL_error(L, "process: field names are texts");
            set_field(L, self, lua_tostring(L, -2), lua_gettop(L));
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
    if (!running || L != running->thread)
        luaL_error(L,
                   "frame() ends the turn of a process: call it in the process's own function, not in "
                   "another coroutine");
    lua_pushinteger(L, frames);
    return lua_yield(L, 1);
}

int kill(lua_State* L) {
    Script& script = Script::of(L);
    script.end_process(process_argument(L, 1));
    return script.return_or_end_turn(L, 0);
}

int exists(lua_State* L) {
    if (lua_isnil(L, 1))
        lua_pushboolean(L, 0);
    else
        lua_pushboolean(L, game_of(L).engine.processes().exists(integer_argument(L, 1)));
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

constexpr luaL_Reg metamethods[] = {
    {"__index", get_field},
    {"__newindex", static_cast<lua_CFunction>(set_field)},
    {"__tostring", describe},
    {nullptr, nullptr},
};

}  // namespace

void bind_processes(lua_State* L) {
    luaL_newmetatable(L, process_type);
    luaL_setfuncs(L, metamethods, 0);
    lua_pop(L, 1);
    bind(L, bindings);
    lua_pushinteger(L, host::screen_coordinates);
    lua_setglobal(L, "c_screen");
}

}  // namespace player
