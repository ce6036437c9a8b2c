// A game that runs: the world, and the script that plays in it. Making another one starts the game over.
#pragma once

#include "player/common/options.h"
#include "player/game/game.h"
#include "player/script/script.h"

namespace player {

class Session {
  public:
    // Errors: std::runtime_error with a message for the script's author, also from play_frame().
    explicit Session(const Options& options) : game(options), script(game, options) {}

    Game game;
    Script script;

    // Every process takes its turn, then the frame is drawn.
    void play_frame() {
        script.run_turns();
        game.draw_frame();
    }
    // Whether the frame just played was the last one of the `frames` asked for, or the script's own last.
    [[nodiscard]] bool over(std::optional<int> frames) const {
        return game.over || (frames && game.frames_drawn >= *frames);
    }
};

}  // namespace player
