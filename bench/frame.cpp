#include <array>
#include <chrono>
#include <cstdio>
#include <numeric>

#include "bench/parts.h"
#include "player/canvas/canvas.h"
#include "player/script/session.h"

namespace bench {
namespace {

// Where the time of a frame goes, in the order in which it is spent.
enum class Step : std::size_t { script, lists, planes, sprites, texts, colours, show, count };
constexpr std::array<const char*, static_cast<std::size_t>(Step::count)> step_names{
    "script", "lists", "planes", "sprites", "texts", "colours", "show"};
constexpr std::size_t steps_without_window = static_cast<std::size_t>(Step::colours);

using Times = std::array<double, step_names.size()>;  // microseconds

double total(const Times& times) {
    return std::accumulate(times.begin(), times.end(), 0.0);
}

// Plays with a stopwatch: each stop gives the time since the last one to a step. It is stopped around all
// that the engine draws, at the entries of the main list and at the sprite routines, whoever calls them.
class Watch final : public host::Observer {
  public:
    explicit Watch(host::Engine& engine) : engine_(engine) {
        watching_ = this;
        hook<&Graphics2DInterface::BlitSprite, &Graphics2DInterface::BlitSpriteScaled,
             &Graphics2DInterface::BlitSpriteRotated, &Graphics2DInterface::BlitSpriteRotatedScaled,
             &Graphics2DInterface::BlitSpriteGeneral, &Graphics2DInterface::BlitSpriteRotatedGeneral>();
        engine_.observe(this);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() override { engine_.observe(nullptr); }

    void reset() {
        times_ = {};
        last_ = Clock::now();
    }
    void stop(Step step) {
        const Clock::time_point now = Clock::now();
        times_[static_cast<std::size_t>(step)] +=
            std::chrono::duration<double, std::micro>(now - last_).count();
        last_ = now;
    }
    [[nodiscard]] const Times& times() const { return times_; }

    void before_drawing(const __RVKBlit2D__&) override { stop(Step::lists); }
    void after_drawing(const __RVKBlit2D__&) override { stop(Step::planes); }

  private:
    using Clock = std::chrono::steady_clock;
    using Slot = BlitRoutine Graphics2DInterface::*;

    template <Slot... slots>
    void hook() {
        (..., (routine<slots> = engine_.graphics().*slots, engine_.graphics().*slots = draw<slots>));
    }
    template <Slot slot>
    static std::int32_t draw(__RVKBlit2D__* blit) {
        watching_->stop(Step::planes);
        const std::int32_t result = routine<slot>(blit);
        watching_->stop(Step::sprites);
        return result;
    }

    template <Slot slot>
    static inline BlitRoutine routine = nullptr;
    static inline Watch* watching_ = nullptr;
    host::Engine& engine_;
    Clock::time_point last_;
    Times times_{};
};

struct Game {
    const char* name;
    Size screen;
};
constexpr Game games[] = {{"main", {640, 360}}, {"ten_scrolls", {480, 270}}};

// Plays a demo from its beginning. The first frames load its maps and warm the caches.
Times play(const Options& options, const Game& game, std::int32_t bits_per_pixel, int frames) {
    constexpr int warm_frames = 30;
    player::Options play;
    play.script = std::string(SCROLL2D_DEMOS "/") + game.name + ".lua";
    play.module = options.module;
    play.bits_per_pixel = bits_per_pixel;
    player::Session session(play);
    player::Canvas canvas(game.screen.width, game.screen.height);
    player::Picture screen;
    Watch watch(session.game.engine);
    for (int frame = -warm_frames; frame < frames; ++frame) {
        if (frame == 0) watch.reset();
        session.script.run_turns();
        watch.stop(Step::script);
        session.game.draw_frame();
        watch.stop(Step::texts);
        session.game.engine.take_screenshot(screen);
        watch.stop(Step::colours);
        canvas.begin();
        canvas.lay(screen, canvas.size());
        canvas.finish();
        watch.stop(Step::show);
    }
    Times each = watch.times();
    for (double& time : each) time /= frames;
    return each;
}
}  // namespace

void measure_frames(const Options& options, Report& report) {
    const int rounds = options.quick ? 2 : 5;
    const int frames = options.quick ? 100 : 400;
    Heading heading(
        "| microseconds of a frame | depth | whole | no window | script | lists | planes | sprites | texts | "
        "colours | show |\n|---|---|---|---|---|---|---|---|---|---|---|\n");
    for (const Game& game : games)
        for (const std::int32_t bits : {8, 16, 32}) {
            if (!options.wants(std::string("frame, ") + game.name + ", " + std::to_string(bits) + " bits"))
                continue;
            Times best{};
            for (int round = 0; round < rounds; ++round) {
                const Times times = play(options, game, bits, frames);
                if (round == 0 || total(times) < total(best)) best = times;
            }
            const double whole = total(best);
            const double without_window =
                std::accumulate(best.begin(), best.begin() + steps_without_window, 0.0);
            heading.print_once();
            std::printf("| %-23s | %5d | %5.0f | %9.0f |",
                        (std::string(game.name) + " " + text(game.screen)).c_str(), bits, whole,
                        without_window);
            for (std::size_t i = 0; i < best.size(); ++i) {
                report.add(Measurement{"frame", "", game.name, "", bits, game.screen, step_names[i], "player",
                                       best[i], best[i] / whole});
                std::printf(" %*.0f |", static_cast<int>(std::string(step_names[i]).size()), best[i]);
            }
            std::printf("\n");
        }
}

}  // namespace bench
