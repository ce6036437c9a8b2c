// The life of a script's Lua state: how it is set up, entered and closed, and what its errors say.
#include <algorithm>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "player/script/lua_support.h"

namespace player {
namespace {

// The error at the top of a state, as its author wants to read it: runs __tostring, which may fail as well.
std::string text_of_error(lua_State* L) {
    if (lua_type(L, -1) == LUA_TSTRING) return lua_tostring(L, -1);
    const std::string type = luaL_typename(L, -1);
    lua_pushcfunction(L, [](lua_State* state) {
        luaL_tolstring(state, 1, nullptr);
        return 1;
    });
    lua_insert(L, -2);
    const bool told = lua_pcall(L, 1, 1, 0) == LUA_OK;
    const char* text = lua_tostring(L, -1);
    if (told) return text;
    return "an error that cannot be shown: a " + type + " whose __tostring failed" +
           (text != nullptr ? std::string(": ") + text : "");
}

// Lua's own message for a mistyped function says that a global is nil; say what it may have been meant to be.
std::string nil_global(const std::string& message) {
    constexpr std::string_view before = "nil value (global '";
    const auto start = message.find(before);
    if (start == std::string::npos) return {};
    const auto name = start + before.size();
    return message.substr(name, message.find('\'', name) - name);
}

// In place of the searcher that finds modules in files: the same, and the file is noted.
int search_and_note(lua_State* L) {
    lua_settop(L, 1);
    lua_pushvalue(L, bound_value(1));
    lua_insert(L, 1);
    lua_call(L, 1, 2);
    if (lua_isfunction(L, 1) && lua_isstring(L, 2)) game_of(L).files_read.note(lua_tostring(L, 2));
    return 2;
}
constexpr Binding search_binding = {"", 0, any_number, search_and_note};

// Lua's own. What goes wrong in a finalizer is warned of.
void open_libraries(lua_State* L, const Options& options) {
    luaL_openlibs(L);
    lua_warning(L, "@on", 0);
    const std::string folder = std::filesystem::absolute(options.script).parent_path().generic_string();
    lua_getglobal(L, "package");
    lua_getfield(L, -1, "path");
    lua_pushfstring(L, "%s/?.lua;%s", folder.c_str(), lua_tostring(L, -1));
    lua_setfield(L, -3, "path");
    constexpr lua_Integer file_searcher = 2;
    lua_getfield(L, -2, "searchers");
    lua_geti(L, -1, file_searcher);
    push_binding(L, search_binding, 1);
    lua_seti(L, -2, file_searcher);
    lua_getglobal(L, "math");
    lua_getfield(L, -1, "randomseed");
    lua_pushinteger(L, options.seed);
    lua_call(L, 1, 0);
    lua_settop(L, 0);
}

int run_body(lua_State* L) {
    const auto& body = *static_cast<const std::function<void(lua_State*)>*>(lua_touserdata(L, 1));
    lua_settop(L, 0);
    body(L);
    return 0;
}
constexpr Binding body_binding = {"", 1, 1, run_body};

// What Lua does with an error that nobody protects from. Nothing should come here.
int panic(lua_State* L) {
    const char* text = lua_tostring(L, -1);
    throw std::runtime_error(text != nullptr ? text : "an error of Lua");
}

}  // namespace

Script::Script(Game& the_game, const Options& options)
    : game(the_game), guard_(options.turn_limit), lua_(luaL_newstate()) {
    if (!lua_) throw std::bad_alloc();
    lua_atpanic(lua_, panic);
    *static_cast<Script**>(lua_getextraspace(lua_)) = this;
    game.engine.processes().on_delete = [this](std::int32_t id) {
        const auto found = by_id_.find(id);
        if (found == by_id_.end()) return;
        found->second->alive = false;
        by_id_.erase(found);
    };
    push_binding(lua_, body_binding);
    lua_rawsetp(lua_, LUA_REGISTRYINDEX, &body_binding);
    enter(lua_, [&](lua_State* L) { set_up(L, options); });
}

Script::~Script() {
    close();
}

void Script::set_up(lua_State* L, const Options& options) {
    TurnGuard::watch(L, check_turn);
    open_libraries(L, options);
    bind_processes(L);
    bind_module(L);
    bind_maps(L);
    bind_screen(L);
    guard_globals(L);
    game.files_read.note(options.script);
    if (luaL_loadfile(L, options.script.c_str()) != LUA_OK) lua_error(L);
    make_process(L, lua_gettop(L), lua_gettop(L) + 1);
}

void Script::check_turn(lua_State* L, lua_Debug*) {
    of(L).guard_.check(L, check_turn);
}

// Runs `body` in Lua, protected; `state` is the one in which code of the script will run. Whatever fails ends
// the script: nothing of it is kept, so that there is memory to tell of it and to finish pictures and films.
void Script::enter(lua_State* state, const std::function<void(lua_State*)>& body) {
    std::string message;
    try {
        const TurnGuard::Turn turn(guard_, state);
        lua_rawgetp(lua_, LUA_REGISTRYINDEX, &body_binding);
        lua_pushlightuserdata(lua_, const_cast<std::function<void(lua_State*)>*>(&body));
        const bool fine = lua_pcall(lua_, 1, 0, 0) == LUA_OK;
        if (fine && guard_.reason().empty()) return;
        message = fine ? guard_.reason() : text_of_error(lua_);
    } catch (const std::bad_alloc&) {
        message = "not enough memory";
    }
    close();
    throw std::runtime_error(message);
}

// Finalizers of the script run here, and may ask for anything.
void Script::close() {
    if (lua_ == nullptr) return;
    running_ = nullptr;
    {
        const TurnGuard::Turn turn(guard_, lua_);
        lua_close(lua_);
    }
    lua_ = nullptr;
    order_.clear();
    by_id_.clear();
    game.engine.processes().on_delete = nullptr;
}

// Leaves the error of a thread as the error of L, a text with the thread's traceback.
void Script::raise_error_of(lua_State* thread, lua_State* L) {
    reserve_.reset();
    lua_xmove(thread, L, 1);
    std::string text = guard_.reason().empty() ? text_of_error(L) : guard_.reason();
    warn_of_globals(text);
    if (const std::string name = nil_global(text); !name.empty()) text += closest_global(L, name);
    luaL_traceback(L, thread, text.c_str(), 0);
    lua_error(L);
    __builtin_unreachable();
}

void Script::warn_of_globals(const std::string& error) {
    for (const auto& [name, warning] : undefined_)
        if (name != nil_global(error)) game.mistakes.warn(warning, "global " + name);
    undefined_.clear();
}

}  // namespace player
