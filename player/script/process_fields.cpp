#include "player/script/process_fields.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include "player/common/names.h"

namespace player {
namespace {

constexpr std::int32_t opaque = 255;

// Fields that are words of the engine's record. Of a measure, the player keeps the fraction that the engine
// has no room for: its place in Process::measures.
struct WordField {
    std::string_view name;
    std::int32_t ProcessLocals::*word;
    int measure = -1;  // -1: none, fractions are floored
};

constexpr WordField word_fields[] = {
    {"x", &ProcessLocals::x, 0},
    {"y", &ProcessLocals::y, 1},
    {"z", &ProcessLocals::z, 2},
    {"angle", &ProcessLocals::angle, 3},
    {"size", &ProcessLocals::size, 4},
    {"size_x", &ProcessLocals::size_x, 5},
    {"size_y", &ProcessLocals::size_y, 6},
    {"alpha", &ProcessLocals::word43, 7},
    {"file", &ProcessLocals::file},
    {"graph", &ProcessLocals::graph},
    {"region", &ProcessLocals::region},
    {"resolution", &ProcessLocals::resolution},
    {"flags", &ProcessLocals::flags},
    {"status", &ProcessLocals::status},
    {"scroll_mask", &ProcessLocals::scroll_mask},
    {"scroll_mark", &ProcessLocals::scroll_mark},
    {"visible", &ProcessLocals::word33},
    {"silhouette", &ProcessLocals::word44},
};
static_assert(std::size(decltype(Process::measures){}) == 8);

const WordField* word_field(std::string_view name) {
    const auto* found = std::find_if(std::begin(word_fields), std::end(word_fields),
                                     [name](const WordField& field) { return name == field.name; });
    return found == std::end(word_fields) ? nullptr : found;
}

bool is_alpha(const WordField& field) {
    return field.word == &ProcessLocals::word43;
}

// What a script reads where the engine has this word, and the other way round: the engine counts
// transparency.
std::int32_t turned(const WordField& field, std::int32_t value) {
    return is_alpha(field) ? opaque - value : value;
}

std::int32_t floored(double value) {
    return static_cast<std::int32_t>(std::floor(value));
}

[[noreturn]] void refuse_field(const std::string& name) {
    std::vector<std::string> names{"ctype", "graph_table", "id", "data"};
    for (const WordField& field : word_fields) names.emplace_back(field.name);
    std::sort(names.begin(), names.end());
    throw Mistake("a process has no field \"" + name + "\"" + suggestion(name, names));
}

ProcessLocals& locals_of(lua_State* L, const Process& process, std::string_view field) {
    if (!process.alive) throw Mistake("field \"" + std::string(field) + "\": this process has ended");
    return *game_of(L).engine.processes().find(process.id);
}

// ---- Writing

std::int32_t value_for(lua_State* L, std::string_view name, int value) {
    const auto fitting = engine_value(L, value);
    return fitting ? *fitting : (refuse(L, value, std::string(name)), 0);
}

void note_place(lua_State* L, const ProcessLocals& locals, std::string_view name) {
    Game& game = game_of(L);
    if (name == "region" && locals.region != 0)
        game.mistakes.note_region(locals.region, place_in_script(L, 1));
    const bool picture = name == "file" || name == "graph";
    if (!picture || locals.graph == 0 || game.engine.files().find_map(locals.file, locals.graph) != nullptr)
        return;
    game.mistakes.note_picture(locals.file, locals.graph, place_in_script(L, 1));
}

void set_word(lua_State* L, Process& process, const WordField& field, int value) {
    ProcessLocals& locals = locals_of(L, process, field.name);
    std::int32_t word = value_for(L, field.name, value);
    double exact = lua_type(L, value) == LUA_TNUMBER ? lua_tonumber(L, value) : word;
    if (is_alpha(field)) {
        word = std::clamp(word, 0, opaque);
        exact = std::clamp<double>(exact, 0, opaque);
    }
    locals.*field.word = turned(field, word);
    if (field.measure >= 0) process.measures[static_cast<std::size_t>(field.measure)] = exact;
    note_place(L, locals, field.name);
}

// Element 0 the count, then the codes, as the engine keeps it. Reading the script's table may run the script.
std::vector<std::int32_t> graph_table_at(lua_State* L, int value) {
    constexpr lua_Integer longest = 256;
    if (lua_isnil(L, value)) return {};
    const std::string wanted = "1 to " + std::to_string(longest) + " graph codes";
    if (!lua_istable(L, value)) refuse(L, value, "graph_table", "a table of " + wanted + ", or nil,");
    const lua_Integer count = luaL_len(L, value);
    if (count < 1 || count > longest)
        throw Mistake("graph_table: " + wanted + " were expected, got " + std::to_string(count));
    std::vector<std::int32_t> table{static_cast<std::int32_t>(count)};
    for (lua_Integer i = 1; i <= count; ++i) {
        lua_geti(L, value, i);
        table.push_back(value_for(L, "graph_table[" + std::to_string(i) + "]", lua_gettop(L)));
        lua_pop(L, 1);
    }
    return table;
}

void set_graph_table(lua_State* L, const Process& process, int self, int value) {
    const auto table = graph_table_at(L, value);
    locals_of(L, process, "graph_table");
    game_of(L).engine.processes().set_graph_table(process.id, table);
    lua_pushvalue(L, value);
    lua_setiuservalue(L, self, Process::graph_table_slot);
}

// ---- Reading

// The fraction counts as long as the engine's word is still its floor.
void push_word(lua_State* L, const Process& process, const WordField& field) {
    const std::int32_t value = turned(field, locals_of(L, process, field.name).*field.word);
    const double kept = field.measure < 0 ? value : process.measures[static_cast<std::size_t>(field.measure)];
    if (kept != value && floored(kept) == value)
        lua_pushnumber(L, kept);
    else
        lua_pushinteger(L, value);
}

}  // namespace

void set_process_field(lua_State* L, int self, const std::string& name, int value) {
    Process& process = process_argument(L, self);
    if (const WordField* field = word_field(name)) {
        set_word(L, process, *field, value);
    } else if (name == "data") {
        lua_pushvalue(L, value);
        lua_setiuservalue(L, self, Process::data_slot);
    } else if (name == "ctype") {
        locals_of(L, process, name);
        game_of(L).engine.processes().set_type(process.id, value_for(L, name, value));
    } else if (name == "graph_table") {
        locals_of(L, process, name);
        set_graph_table(L, process, self, value);
    } else if (name == "id") {
        throw Mistake("the field \"id\" cannot be written");
    } else {
        refuse_field(name);
    }
}

void push_process_field(lua_State* L, int self, const std::string& name) {
    const Process& process = process_argument(L, self);
    if (const WordField* field = word_field(name)) {
        push_word(L, process, *field);
    } else if (name == "ctype") {
        locals_of(L, process, name);
        lua_pushinteger(L, game_of(L).engine.processes().type_of(process.id));
    } else if (name == "id") {
        lua_pushinteger(L, process.id);
    } else if (name == "data") {
        lua_getiuservalue(L, self, Process::data_slot);
    } else if (name == "graph_table") {
        lua_getiuservalue(L, self, Process::graph_table_slot);
    } else {
        refuse_field(name);
    }
}

}  // namespace player
