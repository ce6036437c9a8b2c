// scroll2d_player: plays a game script, in a window or without one. See docs/player-scripts.md.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <new>

#include "player/common/options.h"
#include "player/common/stop.h"
#include "player/desktop.h"
#include "player/output/output.h"
#include "player/script/session.h"
#include "player/streams.h"

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

void play_frames(Session& session, const Options& options, const Outputs& outputs) {
    const int frames = options.frames.value_or(frames_without_window);
    Progress progress(frames);
    PictureStep inspected;
    if (options.inspect) inspected = inspected_pictures(session.game.engine, options.scale);
    Picture screen, inspected_screen;
    for (bool last = false; !last;) {
        session.play_frame();
        last = session.over(frames) || stop_signal() != 0;
        const int frame = session.game.frames_drawn;
        const auto wanted = [&](const auto& output) { return output->wants(frame, last); };
        if (inspected || std::any_of(outputs.begin(), outputs.end(), wanted)) {
            Picture picture(session.game.engine.screenshot());
            if (inspected) picture = inspected(picture);
            for (const auto& output : outputs)
                if (wanted(output)) output->take(picture, frame);
        }
        progress.show(frame);
    }
}

int play(const Options& options) {
    Session session(options);
    const Outputs outputs = make_outputs(options);
    return deliver(outputs, [&] {
        try {
            play_frames(session, options, outputs);
        } catch (const std::exception& error) {
            if (stop_signal() == 0) throw;
            std::fprintf(stderr, "%s\n", error.what());  // where the script was
        }
        if (stop_signal() == 0) return session.game.exit_status;
        std::fprintf(stderr, "stopped at frame %d\n", session.game.frames_drawn);
        return 128 + stop_signal();  // as a shell tells it
    });
}

int run(int argc, char** argv) {
    int exit_status = 0;
    auto options = parse_options(argc, argv, exit_status);
    if (!options) return exit_status;
    heed_stops();
    try {
        if (options->window)
            if (const auto status = play_in_window(*options)) return *status;
        options->window = false;
        choose_places(*options);
        return play(*options);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "not enough memory; less --size or --scale needs less of it\n");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}

bool all_is_printed() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    std::fprintf(stderr, "standard output cannot be written\n");
    return false;
}

}  // namespace
}  // namespace player

int main(int argc, char** argv) {
    if (!player::open_missing_streams()) return 1;
    const int exit_status = player::run(argc, argv);
    return player::all_is_printed() ? exit_status : 1;
}
