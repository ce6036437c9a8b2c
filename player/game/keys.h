// The keys that scripts read: which there are, and which are down.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace player {

// Two hands play the keys: the script's own (press, release), and the one of whoever sits at the window. A
// key is down while either holds it. Without a window there is the script's hand alone, so every run is the
// same.
class Keys {
  public:
    // "left", "a", "f1", "pad_start" ...
    [[nodiscard]] static const std::vector<std::string>& names();

    // Errors of these: std::runtime_error, with the closest name, for a name that no key has.
    [[nodiscard]] bool down(const std::string& name) const;
    void play(const std::string& name, bool down);

    // What the devices of the window hold from now on.
    void hold(std::set<std::string> names) { held_ = std::move(names); }

  private:
    std::set<std::string> played_;
    std::set<std::string> held_;
};

// Keyboard and game pads between two frames of the game. A key that was tapped in between, down and up again,
// still counts for one frame: no tap is too short to be seen.
class DeviceKeys {
  public:
    using Source = int;  // one physical key or button; two of them may carry the same name

    void press(Source source, const std::vector<std::string>& names);
    void release(Source source);
    // When the window loses the keyboard, or a pad is pulled out: nobody will tell of the releases any more.
    void release_all();

    // What counts as held for the next frame.
    [[nodiscard]] std::set<std::string> take();

  private:
    std::set<std::pair<Source, std::string>> held_;
    std::set<std::string> tapped_;
};

}  // namespace player
