// SDL's keyboard and game pads as the keys of a game.
#pragma once

#include <map>

#include "player/game/keys.h"

union SDL_Event;
struct _SDL_GameController;

namespace player {

class Devices {
  public:
    Devices() = default;
    Devices(const Devices&) = delete;
    Devices& operator=(const Devices&) = delete;
    ~Devices();

    // Key presses, buttons, sticks; pads that come and go; the loss of the keyboard.
    void take_event(const SDL_Event& event);
    [[nodiscard]] std::set<std::string> take_keys() { return keys_.take(); }

  private:
    void move_stick(int pad, int axis, int value);

    DeviceKeys keys_;
    std::map<int, _SDL_GameController*> pads_;  // by SDL's instance number
};

}  // namespace player
