#include <cstdio>

#include "bench/composition.h"
#include "bench/parts.h"
#include "bench/progress.h"
#include "bench/view_copy.h"

namespace bench {
namespace {

constexpr Variant one_plane{1, 0, 255};

// A move beyond half the view is a fill, of a part of the map that was not shown before. It goes the way of
// the moves beside it, so that both find as much of the map in the caches.
Position refill(Size view, Position unit) {
    return {unit.x * (view.width / 2 + 1), unit.y * (view.height / 2 + 1)};
}

void measure_fill(const Options& options, Size view, std::int32_t bits, const Pictures& pictures,
                  Heading& heading, Report& report) {
    Measurement m{"fill", "landscape", "fill", "1 plane", bits, view, "fill", {}, 0, 0};
    if (!options.wants(m.name())) return;
    Stage stage(view, bits, pictures);
    stage.load(options.module);
    Show show(stage, one_plane);
    show.move({17, 9});
    show.refill();
    check_frame(stage, show, one_plane, {}, m.name());
    const ViewCopy copy(stage);
    const auto timings =
        time_side_by_side({{"module", [&] { show.refill(); }, {}}, {"memcpy", copy, {}}}, options.plan());
    heading.print_once();
    for (const Timing& timing : timings) {
        m.contender = timing.name;
        m.microseconds = timing.microseconds;
        m.ratio = timing.microseconds / timings[1].microseconds;
        report.add(m);
        if (&timing == timings.data())
            std::printf("| %4d rows %-9s | %5d | %7.1f us | %5.2f |\n", view.height, text(view).c_str(), bits,
                        m.microseconds, m.ratio);
    }
}

struct Direction {
    const char* name;
    Position unit;
};
constexpr Direction directions[] = {
    {"right", {1, 0}}, {"left", {-1, 0}}, {"down", {0, 1}}, {"up", {0, -1}}, {"diagonal", {1, 1}}};

// 0, 1, 2, 4 ... and half the view; 0 shows what the script call itself costs.
std::vector<std::int32_t> distances(const Options& options, Size view, Position unit) {
    std::int32_t half = view.width / 2;
    if (unit.x == 0) half = view.height / 2;
    if (unit.x != 0 && unit.y != 0) half = std::min(view.width, view.height) / 2;
    std::vector<std::int32_t> list{0};
    const std::int32_t factor = options.quick ? 4 : 2;
    for (std::int32_t n = 1; n < half; n *= factor) list.push_back(n);
    list.push_back(half);
    return list;
}

struct Dearest {
    double refills = 0;
    std::int32_t pixels = 0;
};

// Times one direction.
Dearest measure_direction(const Options& options, Stage& stage, const Direction& direction, Report& report) {
    const Size view = stage.view();
    Plan plan = options.plan();
    plan.rounds = std::min(plan.rounds, 2);
    Measurement m{"move", "landscape", "move", direction.name, stage.bits_per_pixel(), view, {}, {}, 0, 0};
    Show show(stage, one_plane);
    Dearest dearest;
    for (const std::int32_t n : distances(options, view, direction.unit)) {
        const Position step{direction.unit.x * n, direction.unit.y * n};
        m.value = std::to_string(n);
        for (int i = 0; i < 7; ++i) show.move(step);
        check_frame(stage, show, one_plane, {}, m.name());
        const auto timings =
            time_side_by_side({{"module", [&] { show.move(step); }, {}},
                               {"refill", [&] { show.move(refill(view, direction.unit)); }, {}}},
                              plan);
        for (const Timing& timing : timings) {
            m.contender = timing.name;
            m.microseconds = timing.microseconds;
            m.ratio = timing.microseconds / timings[1].microseconds;
            report.add(m);
        }
        const double cost = timings[0].microseconds / timings[1].microseconds;
        if (cost > dearest.refills) dearest = {cost, n};
    }
    return dearest;
}

struct MoveStage {
    Size view;
    std::int32_t bits_per_pixel;
    bool in_subset;
};
// Some with rows of 4096 bytes or a multiple in buffer and map alike.
constexpr MoveStage move_stages[] = {
    {{640, 480}, 8, true},     {{640, 480}, 16, false},   {{640, 480}, 32, true},  {{1920, 1080}, 8, false},
    {{1920, 1080}, 16, false}, {{1920, 1080}, 32, false}, {{4096, 512}, 8, false}, {{2048, 1152}, 16, false},
    {{1024, 768}, 32, true},   {{2048, 1152}, 32, false},
};

Size map_of(const MoveStage& m) {
    const bool page_rows = m.view.width * m.bits_per_pixel / 8 % 4096 == 0;
    return page_rows ? Size{m.view.width * 2, m.view.height * 3 / 2} : map_size(m.view);
}

}  // namespace

void measure_fills(const Options& options, Report& report) {
    Heading heading("| fill, view            | depth |       time |   / M |\n|---|---|---|---|\n");
    for (const Size view : view_sizes) {
        if (options.quick && view.height != 1080) continue;
        const Pictures pictures = paint_landscape(map_size(view));
        for (const std::int32_t bits : {8, 16, 32})
            measure_fill(options, view, bits, pictures, heading, report);
    }
}

void measure_moves(const Options& options, Report& report) {
    Heading heading(
        "| move      | depth | right        | left         | down         | up           | diagonal     |\n"
        "|---|---|---|---|---|---|---|\n");
    Progress progress("move", static_cast<int>(std::size(move_stages) * std::size(directions)));
    for (const MoveStage& m : move_stages) {
        const std::string name = text(m.view) + ", " + std::to_string(m.bits_per_pixel) + " bits";
        if ((options.quick && !m.in_subset) || !options.wants("move, " + name)) continue;
        const Pictures pictures = paint_landscape(map_of(m));
        Stage stage(m.view, m.bits_per_pixel, pictures);
        stage.load(options.module);
        heading.print_once();
        std::printf("| %-9s | %5d |", text(m.view).c_str(), m.bits_per_pixel);
        for (const Direction& direction : directions) {
            const Dearest dearest = measure_direction(options, stage, direction, report);
            std::printf(" %.2f at %4d |", dearest.refills, dearest.pixels);
            progress.step(name);
        }
        std::printf("\n");
    }
}

}  // namespace bench
