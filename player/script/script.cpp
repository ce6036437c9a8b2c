#include "player/script/script.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "player/common/names.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

// A turn this long has lost its frame(): about a second of computing.
constexpr int counter_step = 1'000'000;  // instructions
constexpr int longest_turn = 100;        // steps

std::vector<std::string> global_names(lua_State* L) {
    std::vector<std::string> names;
    lua_pushglobaltable(L);
    for (lua_pushnil(L); lua_next(L, -2); lua_pop(L, 1))
        if (lua_type(L, -2) == LUA_TSTRING) names.emplace_back(lua_tostring(L, -2));
    lua_pop(L, 1);
    std::sort(names.begin(), names.end());
    return names;
}

// In place of the searcher that finds modules in files: the same, and the file is noted.
int search_and_note(lua_State* L) {
    lua_settop(L, 1);
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    lua_call(L, 1, 2);
    if (lua_isfunction(L, 1) && lua_isstring(L, 2)) Script::of(L).game.files_read.note(lua_tostring(L, 2));
    return 2;
}

// Lua's own message for a mistyped function says that a global is nil; say what it may have been meant to be.
std::string with_suggestion(lua_State* L, const std::string& message) {
    constexpr std::string_view before = "nil value (global '";
    const auto start = message.find(before);
    if (start == std::string::npos) return message;
    const auto name = start + before.size();
    const std::string hint =
        suggestion(message.substr(name, message.find('\'', name) - name), global_names(L));
    return hint.find("did you mean") == std::string::npos ? message : message + hint;
}

}  // namespace

Script::Script(Game& the_game, const std::string& path, unsigned seed)
    : game(the_game), lua_(luaL_newstate()) {
    if (!lua_) throw std::runtime_error("no memory for Lua");
    *static_cast<Script**>(lua_getextraspace(lua_)) = this;
    game.engine.processes().on_delete = [this](std::int32_t id) {
        const auto found = by_id_.find(id);
        if (found == by_id_.end()) return;
        found->second->alive = false;
        by_id_.erase(found);
    };
    open_libraries(path, seed);
    bind_processes(lua_);
    bind_module(lua_);
    bind_maps(lua_);
    bind_screen(lua_);

    game.files_read.note(path);
    if (luaL_loadfile(lua_, path.c_str()) != LUA_OK) {
        const std::string message = lua_tostring(lua_, -1);
        lua_close(lua_);
        throw std::runtime_error(message);
    }
    make_process(lua_, 1, 2);
    lua_settop(lua_, 0);
}

Script::~Script() {
    game.engine.processes().on_delete = nullptr;
    lua_close(lua_);
}

void Script::open_libraries(const std::string& path, unsigned seed) {
    luaL_openlibs(lua_);
    const std::string folder = std::filesystem::absolute(path).parent_path().string();
    lua_getglobal(lua_, "package");
    lua_getfield(lua_, -1, "path");
    lua_pushfstring(lua_, "%s/?.lua;%s", folder.c_str(), lua_tostring(lua_, -1));
    lua_setfield(lua_, -3, "path");
    constexpr lua_Integer file_searcher = 2;
    lua_getfield(lua_, -2, "searchers");
    lua_geti(lua_, -1, file_searcher);
    lua_pushcclosure(lua_, search_and_note, 1);
    lua_seti(lua_, -2, file_searcher);
    lua_getglobal(lua_, "math");
    lua_getfield(lua_, -1, "randomseed");
    lua_pushinteger(lua_, seed);
    lua_call(lua_, 1, 0);
    lua_settop(lua_, 0);
}

ModuleFunction& Script::module_function(const std::string& name) {
    for (ModuleFunction& function : module_functions_)
        if (function.name == name) return function;
    return module_functions_.emplace_back(ModuleFunction{name, {}});
}

// ---- Processes

Process& Script::make_process(lua_State* L, int function, int first_argument) {
    auto& process = *new (lua_newuserdatauv(L, sizeof(Process), Process::slot_count)) Process;
    luaL_setmetatable(L, process_type);
    const int self = lua_gettop(L);
    process.serial = ++serial_;
    if (function != 0) {
        process.thread = lua_newthread(L);
        lua_setiuservalue(L, self, Process::thread_slot);
        lua_sethook(process.thread, count_instructions, LUA_MASKCOUNT, counter_step);
        lua_pushvalue(L, function);
        lua_pushvalue(L, self);
        for (int i = first_argument; i < self; ++i) lua_pushvalue(L, i);
        process.arguments = lua_gettop(L) - self - 1;
        luaL_checkstack(process.thread, process.arguments + 1, "too many arguments");
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

int Script::return_or_end_turn(lua_State* L, int results) {
    if (running_ && !running_->alive && L == running_->thread) return lua_yield(L, 0);
    return results;
}

// ---- Turns

void Script::run_turns() {
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
    running_ = &process;
    turn_length_ = 0;
    int results = 0;
    const int status = lua_resume(process.thread, lua_, process.arguments, &results);
    running_ = nullptr;
    process.arguments = 0;
    if (status == LUA_YIELD) {
        if (results > 0) process.wait = static_cast<int>(lua_tointeger(process.thread, -1));
        lua_pop(process.thread, results);
        return;
    }
    if (status != LUA_OK) fail(process.thread);
    end_process(process);
}

void Script::fail(lua_State* thread) {
    const char* text = luaL_tolstring(thread, -1, nullptr);
    const std::string message = with_suggestion(thread, text ? text : "unknown error");
    luaL_traceback(lua_, thread, message.c_str(), 0);
    throw std::runtime_error(lua_tostring(lua_, -1));
}

// Lets go of the processes that have ended; their pending to-be-closed variables are closed here.
void Script::bury_ended() {
    const auto ended =
        std::stable_partition(order_.begin(), order_.end(), [](const Process* p) { return p->alive; });
    const std::vector<Process*> dead(ended, order_.end());
    order_.erase(ended, order_.end());
    for (Process* process : dead) {
        if (process->thread && lua_resetthread(process->thread) != LUA_OK) fail(process->thread);
        lua_pushnil(lua_);
        lua_rawsetp(lua_, LUA_REGISTRYINDEX, process);
    }
}

void Script::count_instructions(lua_State* L, lua_Debug*) {
    if (++of(L).turn_length_ <= longest_turn) return;
    // Within a hook the function that runs is at level 0, where luaL_error expects itself.
    luaL_where(L, 0);
    lua_pushfstring(L, "this turn has run %d million instructions: is a frame() missing in a loop?",
                    longest_turn);
    lua_concat(L, 2);
    lua_error(L);
}

}  // namespace player
