/*
 * Ends turns of a script that do not end by themselves.
 *
 * A thread of its own looks at the turn from outside. A turn that has had more of the processor than it may,
 * or that still runs although somebody asked for the end of the run, is condemned: from then on the hook
 * raises an error at every instruction, so no pcall of the script goes on. What even so does not come back (a
 * function of C takes its time, or Lua runs a finalizer, in which there are no hooks) ends the program:
 * pictures and films are saved, the message tells where it was.
 */
#pragma once

#include <lua.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "player/script/playing_thread.h"

namespace player {

class TurnGuard {
  public:
    // `limit`: seconds of the processor for a turn. Turns are those of the thread that makes the guard.
    explicit TurnGuard(double limit);
    TurnGuard(const TurnGuard&) = delete;
    TurnGuard& operator=(const TurnGuard&) = delete;
    ~TurnGuard();

    // Around whatever may run code of the script, in `state` first of all. Never two at once.
    class Turn {
      public:
        Turn(TurnGuard& guard, lua_State* state);
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn();

      private:
        TurnGuard& guard_;
    };

    // Has `hook` called every so many instructions in a state, and in those that are made from it.
    static void watch(lua_State* state, lua_Hook hook);
    // What `hook` does: raises an error in `state`, the one that runs, when the turn is condemned.
    void check(lua_State* state, lua_Hook hook);
    // Why the last turn was ended, with the line; empty: it was not.
    [[nodiscard]] const std::string& reason() const { return reason_; }

  private:
    using Clock = std::chrono::steady_clock;

    void look();  // the other thread
    void look_at(unsigned turn, Clock::time_point now);
    [[nodiscard]] std::string why() const;
    [[nodiscard]] std::string place_of_turn();
    [[noreturn]] void end_program();

    const double limit_;
    PlayingThread player_;
    lua_State* state_ = nullptr;  // of the turn
    std::string reason_;

    // A turn has an odd number; in between the number is even.
    std::atomic<unsigned> turn_{0};
    std::atomic<unsigned> condemned_{0};

    // The other thread's own.
    unsigned seen_ = 0;
    double began_ = 0;  // seconds of the processor when the turn was first seen
    Clock::time_point condemned_at_;
    bool stop_seen_ = false;

    std::mutex lock_;
    std::condition_variable over_;
    bool done_ = false;
    std::thread looks_;
};

// "game.lua:12: ", the line of the script that runs in a state, from `level` upwards; empty: there is none.
std::string place_in_script(lua_State* L, int level);

}  // namespace player
