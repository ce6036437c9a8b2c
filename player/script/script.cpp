#include "player/script/script.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "player/script/lua_support.h"

namespace player {
namespace {

// A process whose first act is to make a process would otherwise go on for ever within one frame.
constexpr int most_made_in_a_frame = 10'000;

}  // namespace

ModuleFunction& Script::module_function(const std::string& name) {
    for (ModuleFunction& function : module_functions_)
        if (function.name == name) return function;
    return module_functions_.emplace_back(ModuleFunction{name, {}});
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
    return ended && lua_isyieldable(L) ? ending_turn(0) : results;
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
