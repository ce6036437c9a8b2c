#include "player/script/script.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "player/script/lua_support.h"

namespace player {
namespace {

// A process whose first act is to make a process would otherwise go on for ever within one frame.
constexpr int most_made_in_a_frame = 10'000;

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
    const std::string folder = std::filesystem::absolute(options.script).parent_path().string();
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

ModuleFunction& Script::module_function(const std::string& name) {
    for (ModuleFunction& function : module_functions_)
        if (function.name == name) return function;
    return module_functions_.emplace_back(ModuleFunction{name, {}});
}

// ---- Into Lua and out of it

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

// ---- Processes

Process& Script::make_process(lua_State* L, int function, int first_argument) {
    if (made_ == most_made_in_a_frame)
        throw std::runtime_error("no more than " + std::to_string(most_made_in_a_frame) +
                                 " processes can be made in one frame: does each one make another?");
    auto& process = *new (lua_newuserdatauv(L, sizeof(Process), Process::slot_count)) Process;
    luaL_setmetatable(L, process_type);
    const int self = lua_gettop(L);
    process.serial = ++serial_;
    ++made_;
    if (function != 0) {
        process.thread = lua_newthread(L);
        lua_setiuservalue(L, self, Process::thread_slot);
        process.arguments = self - first_argument + 1;
        if (!lua_checkstack(L, process.arguments + 1) ||
            !lua_checkstack(process.thread, process.arguments + 1))
            throw std::runtime_error("too many arguments");
        lua_pushvalue(L, function);
        lua_pushvalue(L, self);
        for (int i = first_argument; i < self; ++i) lua_pushvalue(L, i);
        lua_xmove(L, process.thread, process.arguments + 1);
    }
    // The registry keeps the userdata as long as `order_` points to it.
    lua_pushvalue(L, self);
    lua_rawsetp(L, LUA_REGISTRYINDEX, &process);
    process.id = host::Processes::id_of(game.engine.processes().create(host::screen_coordinates));
    order_.push_back(&process);
    by_id_[process.id] = &process;
    return process;
}

void Script::end_process(Process& process) {
    if (process.alive) game.engine.processes().destroy(process.id);
}

std::vector<Process*> Script::living_processes() const {
    std::vector<Process*> living;
    std::copy_if(order_.begin(), order_.end(), std::back_inserter(living),
                 [](const Process* p) { return p->alive; });
    return living;
}

void Script::push_process(lua_State* L, const Process& process) {
    lua_rawgetp(L, LUA_REGISTRYINDEX, &process);
}

// A finalizer, which may run within any turn, cannot end it.
int Script::return_or_end_turn(lua_State* L, int results) {
    const bool ended = running_ != nullptr && !running_->alive && L == running_->thread;
    return ended && lua_isyieldable(L) ? lua_yield(L, 0) : results;
}

// ---- Turns

void Script::run_turns() {
    made_ = 0;
    // By index: a turn may add processes, which take their first turn in the same frame.
    // NOLINTNEXTLINE(modernize-loop-convert): so it must be
    for (std::size_t i = 0; i < order_.size(); ++i) {
        Process& process = *order_[i];
        if (!process.alive || !process.thread) continue;
        constexpr std::int32_t running_status = 2;
        if (game.engine.processes().find(process.id)->status != running_status) continue;
        if (process.wait > 0 && --process.wait > 0) continue;
        take_turn(process);
    }
    bury_ended();
}

void Script::take_turn(Process& process) {
    enter(process.thread, [&](lua_State* L) {
        running_ = &process;
        int results = 0;
        const int status = lua_resume(process.thread, L, process.arguments, &results);
        running_ = nullptr;
        process.arguments = 0;
        if (status != LUA_OK && status != LUA_YIELD) raise_error_of(process.thread, L);
        warn_of_globals({});
        if (status == LUA_OK) return end_process(process);
        if (results > 0) process.wait = static_cast<int>(lua_tointeger(process.thread, -1));
        lua_pop(process.thread, results);
    });
}

// Lets go of the processes that have ended; their pending to-be-closed variables are closed here.
void Script::bury_ended() {
    const auto ended =
        std::stable_partition(order_.begin(), order_.end(), [](const Process* p) { return p->alive; });
    const std::vector<Process*> dead(ended, order_.end());
    order_.erase(ended, order_.end());
    for (Process* process : dead)
        enter(process->thread != nullptr ? process->thread : lua_, [&](lua_State* L) {
            if (process->thread != nullptr && lua_resetthread(process->thread) != LUA_OK)
                raise_error_of(process->thread, L);
            lua_pushnil(L);
            lua_rawsetp(L, LUA_REGISTRYINDEX, process);
        });
}

}  // namespace player
