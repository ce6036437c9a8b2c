#include "player/script/lua_support.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>

namespace player {
namespace {

std::string expected_count(const Binding& binding) {
    if (binding.least == binding.most)
        return std::to_string(binding.least) + (binding.least == 1 ? " argument" : " arguments");
    if (binding.most == any_number) return "at least " + std::to_string(binding.least) + " arguments";
    return std::to_string(binding.least) + " to " + std::to_string(binding.most) + " arguments";
}

int run_binding(lua_State* L) {
    const auto& binding = *static_cast<const Binding*>(lua_touserdata(L, lua_upvalueindex(1)));
    const int count = lua_gettop(L);
    if (count < binding.least || count > binding.most)
        return luaL_error(L, "%s takes %s, got %d", binding.name, expected_count(binding).c_str(), count);
    try {
        return binding.run(L);
    } catch (const std::exception& error) {
        return luaL_error(L, "%s: %s", binding.name, error.what());
    }
}

}  // namespace

void bind(lua_State* L, std::span<const Binding> bindings) {
    for (const Binding& binding : bindings) {
        lua_pushlightuserdata(L, const_cast<Binding*>(&binding));
        lua_pushcclosure(L, run_binding, 1);
        lua_setglobal(L, binding.name);
    }
}

std::int32_t engine_value(lua_State* L, int index, const std::string& what) {
    constexpr lua_Number limit = 2147483648.0;
    switch (lua_type(L, index)) {
        case LUA_TBOOLEAN:
            return lua_toboolean(L, index);
        case LUA_TUSERDATA:
            if (const auto* process = static_cast<Process*>(luaL_testudata(L, index, process_type)))
                return process->alive ? process->id : 0;
            break;
        case LUA_TNUMBER: {
            const lua_Number number = std::floor(lua_tonumber(L, index));
            if (number >= -limit && number < limit) return static_cast<std::int32_t>(number);
            return luaL_error(L, "%s: %s does not fit 32 bits", what.c_str(),
                              luaL_tolstring(L, index, nullptr));
        }
        default:
            break;
    }
    return luaL_error(L, "%s: a number was expected, got %s", what.c_str(), luaL_typename(L, index));
}

int ranged_argument(lua_State* L, int index, int least, int most, int fallback) {
    if (lua_isnoneornil(L, index)) return fallback;
    const int value = integer_argument(L, index);
    if (value < least || value > most)
        luaL_error(L, "argument %d: %d is not in %d to %d", index, value, least, most);
    return value;
}

Rgba parse_colour(lua_State* L, const std::string& text) {
    unsigned r = 0, g = 0, b = 0, a = 255;
    int used = 0;
    const int fields = std::sscanf(text.c_str(), "#%2x%2x%2x%n%2x%n", &r, &g, &b, &used, &a, &used);
    if (fields < 3 || static_cast<std::size_t>(used) != text.size() || (text.size() != 7 && text.size() != 9))
        luaL_error(L, "\"%s\" is not a colour of the form \"#rrggbb\" or \"#rrggbbaa\"", text.c_str());
    return {static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b),
            static_cast<std::uint8_t>(a)};
}

std::uint32_t pixel_argument(lua_State* L, int index, const char* fallback) {
    Game& game = game_of(L);
    if (lua_isnoneornil(L, index) && fallback) return game.pixel_of(parse_colour(L, fallback));
    if (lua_type(L, index) == LUA_TSTRING) return game.pixel_of(parse_colour(L, lua_tostring(L, index)));
    if (!lua_isinteger(L, index))
        luaL_error(L, "argument %d: a colour was expected (rgb(r, g, b) or \"#rrggbb\"), got %s", index,
                   luaL_typename(L, index));
    const lua_Integer value = lua_tointeger(L, index);
    const lua_Integer most = game.bits_per_pixel() == 8    ? 0xff
                             : game.bits_per_pixel() == 16 ? 0xffff
                                                           : 0xffffffff;
    if (value < 0 || value > most)
        luaL_error(L, "argument %d: %I is no pixel value at %d bits", index, static_cast<LUAI_UACINT>(value),
                   game.bits_per_pixel());
    return static_cast<std::uint32_t>(value);
}

Process& process_argument(lua_State* L, int index) {
    return *static_cast<Process*>(luaL_checkudata(L, index, process_type));
}

}  // namespace player
