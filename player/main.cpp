// scroll2d_player: plays a game script, in a window or without one. See docs/player-scripts.md.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

#include "player/inspector/inspector.h"
#include "player/options.h"
#include "player/output.h"
#include "player/session.h"
#include "player/window.h"

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

using Outputs = std::vector<std::unique_ptr<Output>>;

void finish(const Outputs& outputs) {
    for (const auto& output : outputs) output->finish();
}

void play_frames(Session& session, const Options& options, const Outputs& outputs) {
    const int frames = options.frames.value_or(frames_without_window);
    Progress progress(frames);
    std::optional<InspectedPictures> inspected;
    if (options.inspect) inspected.emplace(session.game.engine, options.scale == 1 ? 0 : options.scale);
    for (bool last = false; !last;) {
        session.play_frame();
        last = session.over(frames);
        const int frame = session.game.frames_drawn;
        const auto wanted = [&](const auto& output) { return output->wants(frame, last); };
        if (inspected || std::any_of(outputs.begin(), outputs.end(), wanted)) {
            Picture picture(session.game.engine.screenshot());
            if (inspected) picture = inspected->take(picture);
            for (const auto& output : outputs)
                if (wanted(output)) output->take(picture, frame);
        }
        progress.show(frame);
    }
}

int play(const Options& options) {
    Session session(options);
    const Outputs outputs = make_outputs(options);
    try {
        play_frames(session, options, outputs);
    } catch (...) {
        // The pictures up to the error are what one wants to look at.
        finish(outputs);
        throw;
    }
    finish(outputs);
    return session.game.exit_status;
}

// Null when no window can be opened; then the reason has been printed.
std::unique_ptr<Window> open_window(const Options& options) {
    try {
        return std::make_unique<Window>(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s; drawing pictures instead\n", error.what());
        return nullptr;
    }
}

int play_in(Window& window, const Options& options) {
    window.deliver_to(make_outputs(options));
    return window.run();
}

}  // namespace
}  // namespace player

int main(int argc, char** argv) {
    using namespace player;
    int exit_status = 0;
    auto options = parse_options(argc, argv, exit_status);
    if (!options) return exit_status;
    try {
        if (options->window)
            if (const auto window = open_window(*options)) return play_in(*window, *options);
        options->window = false;
        const std::vector<std::string> left = choose_places(*options);
        exit_status = play(*options);
        for (const std::string& line : left) std::printf("%s\n", line.c_str());
        return exit_status;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
