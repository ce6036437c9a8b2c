// Sixty frames of the game a second, whatever the display does.
#pragma once

namespace player {

inline constexpr double frames_per_second = 60;

class Pacer {
  public:
    // `locked`: the window is shown in step with a display of about 60 Hz. Then each showing is a frame,
    // since counting time against such a display would skip or double one now and then. Otherwise time alone
    // decides.
    explicit Pacer(bool locked = false) : locked_(locked) {}

    // How many frames to play at this moment, none to `most_at_once`. Seconds of any steady clock. Time in
    // which nothing could be played, such as while the window was dragged, is not caught up.
    [[nodiscard]] int due(double now);
    // Seconds until the next one is due.
    [[nodiscard]] double wait(double now) const;

    static constexpr int most_at_once = 3;

  private:
    static constexpr double period = 1 / frames_per_second;

    bool locked_;
    bool started_ = false;
    double next_ = 0;  // when the next frame is due
};

}  // namespace player
