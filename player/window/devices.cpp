#include "player/window/devices.h"

#include <SDL.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace player {
namespace {

struct NamedKey {
    SDL_Keycode key;
    const char* name;
};
constexpr NamedKey named_keys[] = {
    {SDLK_LEFT, "left"},   {SDLK_RIGHT, "right"},  {SDLK_UP, "up"},          {SDLK_DOWN, "down"},
    {SDLK_SPACE, "space"}, {SDLK_RETURN, "enter"}, {SDLK_KP_ENTER, "enter"}, {SDLK_ESCAPE, "escape"},
    {SDLK_TAB, "tab"},     {SDLK_LSHIFT, "shift"}, {SDLK_RSHIFT, "shift"},   {SDLK_LCTRL, "ctrl"},
    {SDLK_RCTRL, "ctrl"},  {SDLK_LALT, "alt"},     {SDLK_RALT, "alt"},       {SDLK_BACKSPACE, "backspace"},
};

// A button is read under its own name, and as a key of the keyboard, so that a game made for the keyboard is
// played with a pad as well.
struct PadButton {
    SDL_GameControllerButton button;
    const char* name;
    const char* key;  // null: none
};
constexpr PadButton pad_buttons[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, "pad_left", "left"},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, "pad_right", "right"},
    {SDL_CONTROLLER_BUTTON_DPAD_UP, "pad_up", "up"},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, "pad_down", "down"},
    {SDL_CONTROLLER_BUTTON_A, "pad_a", "space"},
    {SDL_CONTROLLER_BUTTON_B, "pad_b", "ctrl"},
    {SDL_CONTROLLER_BUTTON_X, "pad_x", "shift"},
    {SDL_CONTROLLER_BUTTON_Y, "pad_y", "alt"},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, "pad_l", nullptr},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, "pad_r", nullptr},
    {SDL_CONTROLLER_BUTTON_START, "pad_start", "enter"},
    {SDL_CONTROLLER_BUTTON_BACK, "pad_back", "backspace"},
};

// Sources of DeviceKeys: scan codes of the keyboard first, then a block for each pad.
constexpr int first_pad_source = SDL_NUM_SCANCODES;
constexpr int sources_of_pad = 64;
constexpr int first_stick_source = SDL_CONTROLLER_BUTTON_MAX;
int pad_source(int pad, int part) {
    return first_pad_source + pad * sources_of_pad + part;
}

std::string name_of(SDL_Keycode key) {
    if ((key >= SDLK_a && key <= SDLK_z) || (key >= SDLK_0 && key <= SDLK_9))
        return std::string(1, static_cast<char>(key));
    if (key >= SDLK_F1 && key <= SDLK_F12) return std::string("f").append(std::to_string(key - SDLK_F1 + 1));
    const auto* found = std::find_if(std::begin(named_keys), std::end(named_keys),
                                     [key](const NamedKey& named) { return named.key == key; });
    return found == std::end(named_keys) ? "" : found->name;
}

std::vector<std::string> names_of(int button) {
    for (const PadButton& known : pad_buttons) {
        if (known.button != button) continue;
        std::vector<std::string> names{known.name};
        if (known.key) names.emplace_back(known.key);
        return names;
    }
    return {};
}

}  // namespace

Devices::~Devices() {
    for (const auto& [number, pad] : pads_) SDL_GameControllerClose(pad);
}

void Devices::take_event(const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
            if (const std::string name = name_of(event.key.keysym.sym);
                !name.empty() && event.key.repeat == 0)
                keys_.press(event.key.keysym.scancode, {name});
            break;
        case SDL_KEYUP:
            keys_.release(event.key.keysym.scancode);
            break;
        case SDL_CONTROLLERDEVICEADDED:
            if (SDL_GameController* pad = SDL_GameControllerOpen(event.cdevice.which)) {
                const int number = SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(pad));
                if (!pads_.emplace(number, pad).second) SDL_GameControllerClose(pad);
            }
            break;
        case SDL_CONTROLLERDEVICEREMOVED:
            if (const auto found = pads_.find(event.cdevice.which); found != pads_.end()) {
                SDL_GameControllerClose(found->second);
                pads_.erase(found);
            }
            keys_.release_all();
            break;
        case SDL_CONTROLLERBUTTONDOWN:
            keys_.press(pad_source(event.cbutton.which, event.cbutton.button),
                        names_of(event.cbutton.button));
            break;
        case SDL_CONTROLLERBUTTONUP:
            keys_.release(pad_source(event.cbutton.which, event.cbutton.button));
            break;
        case SDL_CONTROLLERAXISMOTION:
            move_stick(event.caxis.which, event.caxis.axis, event.caxis.value);
            break;
        case SDL_WINDOWEVENT:
            if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST) keys_.release_all();
            break;
        default:
            break;
    }
}

// The left stick is a second directional pad. It must come well back before it counts as released, so that a
// stick held at the threshold does not flutter.
void Devices::move_stick(int pad, int axis, int value) {
    constexpr int pressed = 16000, released = 12000;  // of 32767
    if (axis != SDL_CONTROLLER_AXIS_LEFTX && axis != SDL_CONTROLLER_AXIS_LEFTY) return;
    const bool across = axis == SDL_CONTROLLER_AXIS_LEFTX;
    const int low = across ? SDL_CONTROLLER_BUTTON_DPAD_LEFT : SDL_CONTROLLER_BUTTON_DPAD_UP;
    const int high = across ? SDL_CONTROLLER_BUTTON_DPAD_RIGHT : SDL_CONTROLLER_BUTTON_DPAD_DOWN;
    for (const int button : {low, high}) {
        const int towards = button == low ? -value : value;
        const int source = pad_source(pad, first_stick_source + button);
        if (towards > pressed) keys_.press(source, names_of(button));
        if (towards < released) keys_.release(source);
    }
}

}  // namespace player
