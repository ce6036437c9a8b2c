#include "player/script/lua_support.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <new>

#include "player/game/text.h"

namespace player {
namespace {

std::string argument(int index) {
    return "argument " + std::to_string(index);
}

std::string expected_count(const Binding& binding) {
    const std::string least = std::to_string(binding.least);
    if (binding.least == binding.most) return arguments_text(least);
    return arguments_text(binding.most == any_number ? "at least " + least
                                                     : least + " to " + std::to_string(binding.most));
}

int run_checked(lua_State* L, const Binding& binding) {
    const int count = lua_gettop(L);
    if (count >= binding.least && count <= binding.most) return binding.run(L);
    throw Mistake("takes " + expected_count(binding) + ", got " + std::to_string(count));
}

// What exceptions say that the library throws for its own readers is not for authors of scripts.
std::string text_of(const std::exception& error) {
    const bool too_large = dynamic_cast<const std::bad_alloc*>(&error) != nullptr ||
                           dynamic_cast<const std::length_error*>(&error) != nullptr;
    return too_large ? "there is not enough memory for that" : error.what();
}

std::string prefix(const Binding& binding, const std::string& message) {
    const std::string name = binding.name;
    if (name.empty() || name.starts_with("__")) return "";
    return name + (message.starts_with("takes ") ? " " : ": ");
}

constexpr int failed = INT_MIN;

// What the binding returns, or `failed` with the message for the author at the top.
[[gnu::noinline]] int run_reporting(lua_State* L, const Binding& binding) {
    std::string message;
    try {
        return run_checked(L, binding);
    } catch (const std::exception& error) {
        message = text_of(error);
    }
    message = place_in_script(L, 1) + prefix(binding, message) + message;
    lua_pushlstring(L, message.data(), message.size());
    return failed;
}

// Lua ends a turn, and raises an error, by an exception, whose way costs time for each function that has
// something to destroy or to catch: this one has nothing.
int enter_binding(lua_State* L) {
    const int results =
        run_reporting(L, *static_cast<const Binding*>(lua_touserdata(L, lua_upvalueindex(1))));
    if (results == failed) return lua_error(L);
    return results < 0 ? lua_yield(L, ending_turn(results)) : results;
}

}  // namespace

void push_binding(lua_State* L, const Binding& binding, int values) {
    lua_pushlightuserdata(L, const_cast<Binding*>(&binding));
    lua_insert(L, -1 - values);
    lua_pushcclosure(L, enter_binding, values + 1);
}

void set_fields(lua_State* L, std::span<const Binding> bindings) {
    for (const Binding& binding : bindings) {
        push_binding(L, binding);
        lua_setfield(L, -2, binding.name);
    }
}

void bind(lua_State* L, std::span<const Binding> bindings) {
    lua_pushglobaltable(L);
    set_fields(L, bindings);
    lua_pop(L, 1);
}

std::string arguments_text(const std::string& how_many) {
    return how_many + (how_many == "1" ? " argument" : " arguments");
}

// ---- Arguments

std::optional<std::int32_t> engine_value(lua_State* L, int index) {
    constexpr lua_Number limit = 2147483648.0;
    switch (lua_type(L, index)) {
        case LUA_TBOOLEAN:
            return lua_toboolean(L, index);
        case LUA_TUSERDATA:
            if (const auto* process = static_cast<Process*>(luaL_testudata(L, index, process_type)))
                return process->alive ? process->id : 0;
            return std::nullopt;
        case LUA_TNUMBER: {
            const lua_Number number = std::floor(lua_tonumber(L, index));
            if (number >= -limit && number < limit) return static_cast<std::int32_t>(number);
            return std::nullopt;
        }
        default:
            return std::nullopt;
    }
}

void refuse(lua_State* L, int index, const std::string& what, const std::string& wanted) {
    if (wanted.empty() && lua_type(L, index) == LUA_TNUMBER)
        throw Mistake(what + ": " + luaL_tolstring(L, index, nullptr) + " does not fit 32 bits");
    throw Mistake(what + ": " + (wanted.empty() ? "a number" : wanted) + " was expected, got " +
                  luaL_typename(L, index));
}

std::int32_t integer_argument(lua_State* L, int index) {
    const auto value = engine_value(L, index);
    return value ? *value : (refuse(L, index, argument(index)), 0);
}

int ranged_argument(lua_State* L, int index, int least, int most, std::optional<int> fallback) {
    if (fallback && lua_isnoneornil(L, index)) return *fallback;
    const int value = integer_argument(L, index);
    if (value >= least && value <= most) return value;
    throw Mistake(argument(index) + ": " + std::to_string(value) + " is not in " + std::to_string(least) +
                  " to " + std::to_string(most));
}

std::string text_argument(lua_State* L, int index) {
    if (lua_type(L, index) != LUA_TSTRING && lua_type(L, index) != LUA_TNUMBER)
        refuse(L, index, argument(index), "a text");
    std::size_t length = 0;
    const char* text = lua_tolstring(L, index, &length);
    return {text, length};
}

std::string drawn_text_argument(lua_State* L, int index) {
    std::string text = text_argument(L, index);
    if (text.size() <= longest_text) return text;
    throw Mistake(argument(index) + ": the text is longer than " + std::to_string(longest_text) +
                  " characters");
}

Process& process_argument(lua_State* L, int index) {
    void* process = luaL_testudata(L, index, process_type);
    if (process == nullptr) refuse(L, index, argument(index), "a process");
    return *static_cast<Process*>(process);
}

Rgba parse_colour(const std::string& text) {
    unsigned r = 0, g = 0, b = 0, a = 255;
    int used = 0;
    const int fields = std::sscanf(text.c_str(), "#%2x%2x%2x%n%2x%n", &r, &g, &b, &used, &a, &used);
    if (fields < 3 || static_cast<std::size_t>(used) != text.size() || (text.size() != 7 && text.size() != 9))
        throw Mistake("\"" + text + "\" is not a colour of the form \"#rrggbb\" or \"#rrggbbaa\"");
    return {static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(b),
            static_cast<std::uint8_t>(a)};
}

std::uint32_t pixel_argument(lua_State* L, int index, const char* fallback) {
    Game& game = game_of(L);
    if (lua_isnoneornil(L, index) && fallback) return game.pixel_of(parse_colour(fallback));
    if (lua_type(L, index) == LUA_TSTRING) return game.pixel_of(parse_colour(lua_tostring(L, index)));
    if (!lua_isinteger(L, index))
        throw Mistake(argument(index) + ": a colour was expected (rgb(r, g, b) or \"#rrggbb\"), got " +
                      luaL_typename(L, index));
    const lua_Integer value = lua_tointeger(L, index);
    const int bits = game.bits_per_pixel();
    if (value < 0 || value >= lua_Integer{1} << bits)
        throw Mistake(argument(index) + ": " + std::to_string(value) + " is no pixel value at " +
                      std::to_string(bits) + " bits");
    return static_cast<std::uint32_t>(value);
}

// ---- Results

int push_pair(lua_State* L, lua_Integer first, lua_Integer second) {
    lua_pushinteger(L, first);
    lua_pushinteger(L, second);
    return 2;
}

int push_nil(lua_State* L) {
    lua_pushnil(L);
    return 1;
}

}  // namespace player
