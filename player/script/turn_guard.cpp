#include "player/script/turn_guard.h"

#include <lauxlib.h>

#include <cstdio>

#include "player/common/stop.h"

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr auto time_between_looks = 50ms;
constexpr auto grace = 1s;  // from being condemned to the end of the program
constexpr int instructions_between_checks = 10'000;
constexpr unsigned ending = ~0U - 1;  // number of no turn: the program ends, from the other thread

// The nearest function that has a line; false: there is none. Takes no memory, so a signal handler may ask.
bool find_line(lua_State* L, int level, lua_Debug& at) {
    for (; lua_getstack(L, level, &at) != 0; ++level)
        if (lua_getinfo(L, "Sl", &at) != 0 && at.currentline > 0) return true;
    return false;
}

std::string text_of(const lua_Debug& at) {
    return std::string(at.short_src) + ":" + std::to_string(at.currentline) + ": ";
}

// Where is the script? Only while its thread does nothing else can another one know.
struct Question {
    std::atomic<lua_State*> state{nullptr};
    lua_Debug at{};
    std::atomic<bool> found{false};
};
Question question;

void answer() {
    lua_State* state = question.state;
    question.found = state != nullptr && find_line(state, 0, question.at);
}

[[noreturn]] void wait_for_the_end() {
    while (true) std::this_thread::sleep_for(1h);
}

}  // namespace

std::string place_in_script(lua_State* L, int level) {
    lua_Debug at{};
    return find_line(L, level, at) ? text_of(at) : "";
}

TurnGuard::TurnGuard(double limit) : limit_(limit) {
    looks_ = PlayingThread::beside([this] { look(); });
}

TurnGuard::~TurnGuard() {
    {
        const std::lock_guard lock(lock_);
        done_ = true;
    }
    over_.notify_one();
    looks_.join();
}

// ---- The thread that plays

TurnGuard::Turn::Turn(TurnGuard& guard, lua_State* state) : guard_(guard) {
    guard_.state_ = state;
    guard_.reason_.clear();
    ++guard_.turn_;
}

TurnGuard::Turn::~Turn() {
    unsigned turn = guard_.turn_;
    if (turn == ending || !guard_.turn_.compare_exchange_strong(turn, turn + 1)) wait_for_the_end();
}

void TurnGuard::watch(lua_State* state, lua_Hook hook) {
    lua_sethook(state, hook, LUA_MASKCOUNT, instructions_between_checks);
}

void TurnGuard::check(lua_State* state, lua_Hook hook) {
    if (condemned_ != turn_) return;
    for (lua_State* each : {state, state_}) lua_sethook(each, hook, LUA_MASKCOUNT, 1);
    if (reason_.empty()) reason_ = place_in_script(state, 0) + why();
    lua_pushstring(state, reason_.c_str());
    lua_error(state);
}

std::string TurnGuard::why() const {
    if (stop_signal() != 0) return "stopped here";
    char text[120];
    std::snprintf(text, sizeof text,
                  "this turn has taken %g s of the processor's time: is a frame() missing in a loop? "
                  "(--turn-limit allows more)",
                  limit_);
    return text;
}

// ---- The other thread

void TurnGuard::look() {
    std::unique_lock lock(lock_);
    while (!over_.wait_for(lock, time_between_looks, [this] { return done_; })) look_at(turn_, Clock::now());
}

void TurnGuard::look_at(unsigned turn, Clock::time_point now) {
    // The frame in which somebody asks for the end has until the next look to be finished.
    const bool stopping = stop_seen_;
    stop_seen_ = stop_signal() != 0;
    if (turn % 2 == 0) return;
    if (turn != seen_) {
        seen_ = turn;
        began_ = player_.processor_seconds();
        if (!stopping) return;
    }
    if (condemned_ != turn) {
        if (!stopping && player_.processor_seconds() - began_ < limit_) return;
        condemned_ = turn;
        condemned_at_ = now;
    } else if (now - condemned_at_ > grace && turn_.compare_exchange_strong(turn, ending)) {
        end_program();
    }
}

std::string TurnGuard::place_of_turn() {
    question.state = state_;
    return player_.interrupt(answer) && question.found ? text_of(question.at) : "";
}

void TurnGuard::end_program() {
    const std::string place = place_of_turn();
    end_at_once(place + why() + "\nIt does not come back, so the player ends.");
}

}  // namespace player
