// The keys that belong to the window and never reach the game.
#pragma once

#include <span>

struct SDL_KeyboardEvent;

namespace player {

enum class Command { none, help, inspector, pause, step, reload, full_screen, close };

struct CommandKey {
    Command command;
    int key;           // SDL's key code
    int modifiers;     // of SDL, one of which must be held; 0: none needed
    const char* name;  // as printed on the keyboard
    const char* does;
};

// In the order in which they are listed for people.
[[nodiscard]] std::span<const CommandKey> command_keys();

// Command::none for a key of the game, and for one that repeats itself because it is held, but for single
// steps.
[[nodiscard]] Command command_of(const SDL_KeyboardEvent& event);

}  // namespace player
