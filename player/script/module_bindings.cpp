// What the loaded module registered, as Lua sees it: its functions, constants and structures, found by
// enumeration.
#include <algorithm>

#include "player/common/names.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

constexpr const char* array_type = "module structure";
constexpr const char* element_type = "module structure element";

// ---- Functions

// "6 or 7 arguments"
std::string expected_counts(const ModuleFunction& function) {
    std::string text;
    for (const int count : function.argument_counts)
        text += (text.empty() ? "" : " or ") + std::to_string(count);
    return text + (text == "1" ? " argument" : " arguments");
}

int call_function(lua_State* L) {
    const auto& function = *static_cast<const ModuleFunction*>(lua_touserdata(L, lua_upvalueindex(1)));
    const int count = lua_gettop(L);
    const auto& counts = function.argument_counts;
    if (std::find(counts.begin(), counts.end(), count) == counts.end())
        return luaL_error(L, "%s takes %s, got %d", function.name.c_str(), expected_counts(function).c_str(),
                          count);
    std::vector<std::int32_t> arguments;
    for (int i = 1; i <= count; ++i)
        arguments.push_back(engine_value(L, i, function.name + ", argument " + std::to_string(i)));

    Script& script = Script::of(L);
    host::Engine& engine = script.game.engine;
    const host::CallResult result = engine.call(function.name, arguments);
    engine.clear_errors();
    if (!result.errors.empty()) return luaL_error(L, "%s", result.errors.front().text().c_str());
    if (!engine.faults().empty())
        return luaL_error(L, "%s: the module broke its contract: %s", function.name.c_str(),
                          engine.faults().front().c_str());
    lua_pushinteger(L, result.value);
    return script.return_or_end_turn(L, 1);
}

void bind_functions(lua_State* L) {
    Script& script = Script::of(L);
    for (const host::ScriptFunction& function : script.game.engine.functions()) {
        ModuleFunction& known = script.module_function(function.name);
        known.argument_counts.push_back(function.argument_count);
        lua_pushlightuserdata(L, &known);
        lua_pushcclosure(L, call_function, 1);
        lua_setglobal(L, function.name.c_str());
    }
}

// ---- Structures

// An element of a structure; the array itself is a Lua userdata whose first user value lists its elements.
struct Element {
    int structure;  // index among the engine's structures
    int index;
};

const host::GlobalStruct& structure_at(lua_State* L, int number) {
    return game_of(L).engine.globals().structs()[static_cast<std::size_t>(number)];
}

// The field's place in the engine's data, looked up afresh: the data may have moved.
std::int32_t& field_at(lua_State* L) {
    const auto& element = *static_cast<Element*>(luaL_checkudata(L, 1, element_type));
    const host::GlobalStruct& structure = structure_at(L, element.structure);
    const std::string name = luaL_tolstring(L, 2, nullptr);
    const auto field = structure.field_index(name);
    if (!field) {
        std::vector<std::string> names;
        for (const auto& known : structure.fields) names.push_back(known.name);
        luaL_error(L, "%s[%d] has no field \"%s\"%s", structure.name.c_str(), element.index, name.c_str(),
                   suggestion(name, names).c_str());
    }
    const std::size_t offset =
        structure.offset + static_cast<std::size_t>(element.index) * structure.element_size() + 4 * *field;
    return *reinterpret_cast<std::int32_t*>(game_of(L).engine.globals().data() + offset);
}

int get_element_field(lua_State* L) {
    lua_pushinteger(L, field_at(L));
    return 1;
}

int set_element_field(lua_State* L) {
    const std::int32_t value = engine_value(L, 3, luaL_checkstring(L, 2));
    field_at(L) = value;
    return 0;
}

int get_element(lua_State* L) {
    const int number = *static_cast<int*>(luaL_checkudata(L, 1, array_type));
    const host::GlobalStruct& structure = structure_at(L, number);
    int is_integer = 0;
    const lua_Integer index = lua_tointegerx(L, 2, &is_integer);
    if (!is_integer || index < 0 || index >= structure.count)
        return luaL_error(L, "%s[%s] does not exist: its elements are 0 to %d", structure.name.c_str(),
                          luaL_tolstring(L, 2, nullptr), structure.count - 1);
    lua_getiuservalue(L, 1, 1);
    lua_geti(L, -1, index);
    return 1;
}

int refuse_element(lua_State* L) {
    const int number = *static_cast<int*>(luaL_checkudata(L, 1, array_type));
    const char* name = structure_at(L, number).name.c_str();
    return luaL_error(L, "an element of %s cannot be replaced: write one of its fields, as in %s[0].%s = ...",
                      name, name, structure_at(L, number).fields.front().name.c_str());
}

int count_elements(lua_State* L) {
    lua_pushinteger(L, structure_at(L, *static_cast<int*>(luaL_checkudata(L, 1, array_type))).count);
    return 1;
}

constexpr luaL_Reg element_metamethods[] = {
    {"__index", get_element_field}, {"__newindex", set_element_field}, {nullptr, nullptr}};
constexpr luaL_Reg array_metamethods[] = {
    {"__index", get_element}, {"__newindex", refuse_element}, {"__len", count_elements}, {nullptr, nullptr}};

void push_element(lua_State* L, int structure, int index) {
    *static_cast<Element*>(lua_newuserdatauv(L, sizeof(Element), 0)) = {structure, index};
    luaL_setmetatable(L, element_type);
}

void bind_structures(lua_State* L) {
    luaL_newmetatable(L, element_type);
    luaL_setfuncs(L, element_metamethods, 0);
    luaL_newmetatable(L, array_type);
    luaL_setfuncs(L, array_metamethods, 0);
    lua_pop(L, 2);
    int number = 0;
    for (const host::GlobalStruct& structure : game_of(L).engine.globals().structs()) {
        // A structure that was declared without a count is its own only element.
        if (structure.count == 1) {
            push_element(L, number, 0);
        } else {
            *static_cast<int*>(lua_newuserdatauv(L, sizeof(int), 1)) = number;
            luaL_setmetatable(L, array_type);
            lua_createtable(L, structure.count, 0);
            for (int i = 0; i < structure.count; ++i) {
                push_element(L, number, i);
                lua_seti(L, -2, i);
            }
            lua_setiuservalue(L, -2, 1);
        }
        lua_setglobal(L, structure.name.c_str());
        ++number;
    }
}

}  // namespace

void bind_module(lua_State* L) {
    for (const host::ScriptConstant& constant : game_of(L).engine.constants()) {
        lua_pushinteger(L, constant.value);
        lua_setglobal(L, constant.name.c_str());
    }
    bind_functions(L);
    bind_structures(L);
}

}  // namespace player
