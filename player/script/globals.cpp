// Globals that were never defined: a script that reads one gets nil, as in all of Lua, and a warning.
#include <algorithm>
#include <vector>

#include "player/common/names.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

// The globals that are, or have been, anything but nil: a set in the registry.
constexpr char defined_globals = 0;

void push_defined(lua_State* L) {
    lua_rawgetp(L, LUA_REGISTRYINDEX, &defined_globals);
}

int define_global(lua_State* L) {
    push_defined(L);
    lua_pushvalue(L, 2);
    lua_pushboolean(L, 1);
    lua_rawset(L, -3);
    lua_pop(L, 1);
    lua_rawset(L, 1);
    return 0;
}

int read_undefined(lua_State* L) {
    const bool named = lua_type(L, 2) == LUA_TSTRING;
    push_defined(L);
    lua_pushvalue(L, 2);
    const std::string place = place_in_script(L, 1);
    if (!named || place.empty() || lua_rawget(L, -2) != LUA_TNIL) return push_nil(L);
    const std::string name = text_argument(L, 2);
    Script::of(L).undefined_global(name, place + "the global \"" + name + "\" was never defined" +
                                             closest_global(L, name) + ": it is nil");
    return push_nil(L);
}

constexpr Binding metamethods[] = {
    {"__index", 2, 2, read_undefined},
    {"__newindex", 3, 3, define_global},
};

}  // namespace

void guard_globals(lua_State* L) {
    lua_pushglobaltable(L);
    const int globals = lua_gettop(L);
    lua_newtable(L);
    for (lua_pushnil(L); lua_next(L, globals) != 0; lua_pop(L, 1)) {
        lua_pushvalue(L, -2);
        lua_pushboolean(L, 1);
        lua_rawset(L, -5);
    }
    lua_rawsetp(L, LUA_REGISTRYINDEX, &defined_globals);
    lua_newtable(L);
    set_fields(L, metamethods);
    lua_setmetatable(L, globals);
    lua_pop(L, 1);
}

std::string closest_global(lua_State* L, const std::string& name) {
    std::vector<std::string> names;
    push_defined(L);
    for (lua_pushnil(L); lua_next(L, -2) != 0; lua_pop(L, 1))
        if (lua_type(L, -2) == LUA_TSTRING) names.emplace_back(lua_tostring(L, -2));
    lua_pop(L, 1);
    std::sort(names.begin(), names.end());
    const auto found = closest(name, names);
    return found ? " (did you mean \"" + *found + "\"?)" : "";
}

}  // namespace player
