/*
 * A running game script: the Lua state, and its processes as coroutines that take one turn each frame.
 *
 * Lua is the build that reports errors by C++ exceptions, so destructors run when a binding fails. C++ goes
 * into Lua through Script::enter() alone, and Lua into C++ through push_binding() (lua_support.h) alone: no
 * error leaves Lua unprotected, and no exception crosses it.
 */
#pragma once

#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "player/game/game.h"
#include "player/script/turn_guard.h"

namespace player {

// A process as the script holds it; lives in a Lua userdata, which outlasts the engine's process.
struct Process {
    std::int32_t id = 0;          // the engine's id; may be given to another process once this one has ended
    int serial = 0;               // 1 for the script's own text, 2 for the first process it makes ...
    lua_State* thread = nullptr;  // null: a process without a script
    int wait = 0;                 // frames until its next turn; 0: the next
    int arguments = 0;            // waiting on the thread's stack for its first turn
    bool alive = true;

    // What the script wrote into the fields that may be fractions; the engine has the floor of it.
    std::array<double, 8> measures{};

    // What the userdata carries for Lua.
    enum Slot { thread_slot = 1, data_slot, graph_table_slot, slot_count = graph_table_slot };
};

// A script function of a module: one name, the numbers of arguments it takes.
struct ModuleFunction {
    std::string name;
    std::vector<int> argument_counts;
};

class Script {
  public:
    // Binds everything that the game offers, and compiles the file. Throws std::runtime_error with the
    // message for the script's author.
    Script(Game& game, const Options& options);
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;
    ~Script();

    // The script that a Lua state belongs to.
    static Script& of(lua_State* L) { return **static_cast<Script**>(lua_getextraspace(L)); }

    Game& game;

    // One frame's turns, oldest process first. Throws std::runtime_error with message and traceback; then the
    // script is over, and what it held is free.
    void run_turns();

    // ---- Processes

    // Makes a process and pushes it. Takes the function at `function` (0: none) and the values from
    // `first_argument` to the top as its arguments after itself. Errors: std::runtime_error when too many are
    // made in one frame.
    Process& make_process(lua_State* L, int function, int first_argument);
    // Ends a process; ended ones are ignored.
    void end_process(Process& process);
    [[nodiscard]] std::vector<Process*> living_processes() const;
    static void push_process(lua_State* L, const Process& process);
    // Null outside turns.
    [[nodiscard]] Process* running() const { return running_; }
    // To be returned by a binding that may have ended the process that called it: its function goes no
    // further.
    int return_or_end_turn(lua_State* L, int results);

    // The function of that name, without numbers of arguments when it is first asked for. Stays where it is.
    ModuleFunction& module_function(const std::string& name);

    // A global that was read and never defined. The warning is given when the turn is over, once, unless the
    // turn ends with an error about this very name.
    void undefined_global(const std::string& name, const std::string& text) {
        undefined_.try_emplace(name, text);
    }

  private:
    void enter(lua_State* state, const std::function<void(lua_State*)>& body);
    void close();
    static void check_turn(lua_State* L, lua_Debug* event);
    void set_up(lua_State* L, const Options& options);
    void take_turn(Process& process);
    void bury_ended();
    [[noreturn]] void raise_error_of(lua_State* thread, lua_State* L);
    void warn_of_globals(const std::string& error);

    TurnGuard guard_;
    lua_State* lua_;                                // null: the script is over
    std::vector<Process*> order_;                   // oldest first; ended ones until the end of the frame
    std::map<std::int32_t, Process*> by_id_;        // living ones
    std::deque<ModuleFunction> module_functions_;   // stable addresses
    std::map<std::string, std::string> undefined_;  // globals that this turn has read; their warnings
    Process* running_ = nullptr;
    int serial_ = 0;
    int made_ = 0;  // processes, in this frame
    // Given back when the script fails, so that a lack of memory can be told of.
    std::unique_ptr<char[]> reserve_ = std::make_unique_for_overwrite<char[]>(4 << 20);
};

}  // namespace player
