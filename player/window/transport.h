// Whether the game in the window goes on: it runs, is paused, advances a frame at a time, or stands after an
// error.
#pragma once

#include <string>

namespace player {

class Transport {
  public:
    void toggle_pause() { paused_ = !paused_; }
    // One frame, then paused.
    void step() {
        paused_ = true;
        step_ = true;
    }
    // The game stands until it is loaded again; the message says why.
    void fail(std::string message) {
        error_ = std::move(message);
        step_ = false;
    }
    // A fresh game. A pause stays: who was looking at single frames wants to see the first ones, too.
    void loaded() {
        error_.clear();
        step_ = paused_;
    }

    [[nodiscard]] bool paused() const { return paused_; }
    // Whether no frame is played until somebody does something.
    [[nodiscard]] bool stands() const { return failed() || (paused_ && !step_); }
    [[nodiscard]] bool failed() const { return !error_.empty(); }
    [[nodiscard]] const std::string& error() const { return error_; }

    // Whether a frame that is due is to be played. A step is used up by it.
    [[nodiscard]] bool take_frame() {
        if (stands()) return false;
        step_ = false;
        return true;
    }

  private:
    bool paused_ = false;
    bool step_ = false;
    std::string error_;
};

}  // namespace player
