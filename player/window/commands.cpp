#include "player/window/commands.h"

#include <SDL.h>

namespace player {
namespace {

constexpr CommandKey keys[] = {
    {Command::help, SDLK_F1, 0, "F1", "this list"},
    {Command::inspector, SDLK_F2, 0, "F2", "the inspector: views, camera regions, maps, fields"},
    {Command::pause, SDLK_F3, 0, "F3", "pause, and go on"},
    {Command::step, SDLK_F4, 0, "F4", "one frame, then pause"},
    {Command::reload, SDLK_F5, 0, "F5", "load the script again, from its beginning"},
    {Command::full_screen, SDLK_F11, 0, "F11", "full screen, and back"},
    {Command::full_screen, SDLK_RETURN, KMOD_ALT, "Alt+Enter", "the same"},
    {Command::close, SDLK_ESCAPE, 0, "Escape", "close"},
};

const CommandKey* find(const SDL_KeyboardEvent& event) {
    for (const CommandKey& key : keys)
        if (key.key == event.keysym.sym && (key.modifiers == 0 || (event.keysym.mod & key.modifiers) != 0))
            return &key;
    return nullptr;
}

}  // namespace

std::span<const CommandKey> command_keys() {
    return keys;
}

Command command_of(const SDL_KeyboardEvent& event) {
    const CommandKey* key = event.type == SDL_KEYDOWN ? find(event) : nullptr;
    if (!key || (event.repeat != 0 && key->command != Command::step)) return Command::none;
    return key->command;
}

}  // namespace player
