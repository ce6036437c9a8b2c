// scroll2d_player: plays a game script for a number of frames. See docs/player-scripts.md.
#include <chrono>
#include <cstdio>
#include <exception>

#include "player/game.h"
#include "player/options.h"
#include "player/output.h"
#include "player/script.h"

namespace player {
namespace {

// Tells on standard error how far a run is, once it has taken long enough for somebody to wonder.
class Progress {
  public:
    explicit Progress(int frames) : frames_(frames) {}

    void show(int frame) {
        const auto now = std::chrono::steady_clock::now();
        if (now < next_) return;
        next_ = now + std::chrono::seconds(2);
        std::fprintf(stderr, "frame %d of %d\n", frame, frames_);
    }

  private:
    int frames_;
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::seconds(2);
};

int play(const Options& options) {
    Game game(options);
    Script script(game, options.script, options.seed);
    std::vector<std::unique_ptr<Output>> outputs;
    if (!options.shots_folder.empty() || !options.sheet.empty()) outputs.push_back(make_shots(options));

    Progress progress(options.frames);
    while (!game.over && game.frames_drawn < options.frames) {
        script.run_turns();
        game.draw_frame();
        const bool last = game.over || game.frames_drawn == options.frames;
        for (const auto& output : outputs)
            if (output->wants(game.frames_drawn, last))
                output->take(Picture(game.engine.screenshot()), game.frames_drawn);
        progress.show(game.frames_drawn);
    }
    for (const auto& output : outputs) output->finish();
    return game.exit_status;
}

}  // namespace
}  // namespace player

int main(int argc, char** argv) {
    int exit_status = 0;
    const auto options = player::parse_options(argc, argv, exit_status);
    if (!options) return exit_status;
    try {
        return player::play(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
