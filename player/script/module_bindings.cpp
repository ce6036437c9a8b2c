// What the loaded module registered, as Lua sees it: its functions, constants and structures, found by
// enumeration.
#include <algorithm>

#include "player/common/names.h"
#include "player/script/lua_support.h"
#include "player/script/module_results.h"

namespace player {
namespace {

constexpr const char* array_type = "module structure";
constexpr const char* element_type = "module structure element";

// ---- Functions

std::vector<std::int32_t> arguments_for(lua_State* L, const ModuleFunction& function) {
    const auto& counts = function.argument_counts;
    const int count = lua_gettop(L);
    if (std::find(counts.begin(), counts.end(), count) == counts.end()) {
        std::string expected;
        for (const int each : counts) expected += (expected.empty() ? "" : " or ") + std::to_string(each);
        throw Mistake(function.name + " takes " + arguments_text(expected) + ", got " +
                      std::to_string(count));
    }
    std::vector<std::int32_t> arguments;
    for (int i = 1; i <= count; ++i) {
        const auto value = engine_value(L, i);
        if (!value) refuse(L, i, function.name + ": argument " + std::to_string(i));
        arguments.push_back(*value);
    }
    return arguments;
}

int call_function(lua_State* L) {
    const auto& function = *static_cast<const ModuleFunction*>(lua_touserdata(L, bound_value(1)));
    const std::vector<std::int32_t> arguments = arguments_for(L, function);
    Script& script = Script::of(L);
    host::Engine& engine = script.game.engine;
    const host::CallResult result = engine.call(function.name, arguments);
    engine.clear_errors();
    if (!result.errors.empty()) throw Mistake(result.errors.front().text());
    if (!engine.faults().empty())
        throw Mistake(function.name + ": the module broke its contract: " + engine.faults().front());
    judge_result(script.game, function.name, arguments, result.value, place_in_script(L, 1));
    lua_pushinteger(L, result.value);
    return script.return_or_end_turn(L, 1);
}
constexpr Binding call_binding = {"", 0, any_number, call_function};

void bind_functions(lua_State* L) {
    Script& script = Script::of(L);
    for (const host::ScriptFunction& function : script.game.engine.functions()) {
        ModuleFunction& known = script.module_function(function.name);
        known.argument_counts.push_back(function.argument_count);
        lua_pushlightuserdata(L, &known);
        push_binding(L, call_binding, 1);
        lua_setglobal(L, function.name.c_str());
    }
}

// ---- Structures

// An element of a structure; the array itself is a Lua userdata whose first user value lists its elements.
struct Element {
    int structure;  // index among the engine's structures
    int index;
};

// What the userdata holds that a metamethod is about.
template <class Value>
const Value& self(lua_State* L, const char* type) {
    if (const void* value = luaL_testudata(L, 1, type)) return *static_cast<const Value*>(value);
    throw Mistake(std::string("a ") + type + " was expected, got " + luaL_typename(L, 1));
}

const host::GlobalStruct& structure_at(lua_State* L, int number) {
    return game_of(L).engine.globals().structs()[static_cast<std::size_t>(number)];
}

// The field's place in the engine's data, looked up afresh: the data may have moved.
std::int32_t& field_at(lua_State* L) {
    const auto& element = self<Element>(L, element_type);
    const host::GlobalStruct& structure = structure_at(L, element.structure);
    const std::string name = luaL_tolstring(L, 2, nullptr);
    const auto field = structure.field_index(name);
    if (!field) {
        std::vector<std::string> names;
        for (const auto& known : structure.fields) names.push_back(known.name);
        throw Mistake(structure.name + "[" + std::to_string(element.index) + "] has no field \"" + name +
                      "\"" + suggestion(name, names));
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
    const std::string name = luaL_tolstring(L, 2, nullptr);
    std::int32_t& field = field_at(L);
    const auto value = engine_value(L, 3);
    if (!value) refuse(L, 3, name, name == "camera" ? "a process or 0" : "");
    field = *value;
    if (name == "region1" || name == "region2")
        game_of(L).mistakes.note_region(*value, place_in_script(L, 1));
    return 0;
}

int get_element(lua_State* L) {
    const host::GlobalStruct& structure = structure_at(L, self<int>(L, array_type));
    int is_integer = 0;
    const lua_Integer index = lua_tointegerx(L, 2, &is_integer);
    if (!is_integer || index < 0 || index >= structure.count)
        throw Mistake(structure.name + "[" + luaL_tolstring(L, 2, nullptr) +
                      "] does not exist: its elements are 0 to " + std::to_string(structure.count - 1));
    lua_getiuservalue(L, 1, 1);
    lua_geti(L, -1, index);
    return 1;
}

int refuse_element(lua_State* L) {
    const host::GlobalStruct& structure = structure_at(L, self<int>(L, array_type));
    throw Mistake("an element of " + structure.name + " cannot be replaced: write one of its fields, as in " +
                  structure.name + "[0]." + structure.fields.front().name + " = ...");
}

int count_elements(lua_State* L) {
    lua_pushinteger(L, structure_at(L, self<int>(L, array_type)).count);
    return 1;
}

constexpr Binding element_metamethods[] = {
    {"__index", 2, 2, get_element_field},
    {"__newindex", 3, 3, set_element_field},
};
constexpr Binding array_metamethods[] = {
    {"__index", 2, 2, get_element},
    {"__newindex", 3, 3, refuse_element},
    {"__len", 1, any_number, count_elements},
};

void push_element(lua_State* L, int structure, int index) {
    *static_cast<Element*>(lua_newuserdatauv(L, sizeof(Element), 0)) = {structure, index};
    luaL_setmetatable(L, element_type);
}

void bind_structures(lua_State* L) {
    luaL_newmetatable(L, element_type);
    set_fields(L, element_metamethods);
    luaL_newmetatable(L, array_type);
    set_fields(L, array_metamethods);
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
