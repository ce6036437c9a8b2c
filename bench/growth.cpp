#include <cstdio>
#include <deque>

#include "bench/composition.h"
#include "bench/parts.h"
#include "bench/view_copy.h"

namespace bench {
namespace {

constexpr Variant two_planes{2, 0, 255};
constexpr Position step{4, 4};

// One series: what a frame costs as a count grows.
class Series {
  public:
    Series(const Options& options, Report& report, const char* what, const char* unit)
        : options_(options), report_(report), what_(what) {
        std::printf("\n| %-18s |      a frame | a %-10s |   / M |\n|---|---|---|---|\n", what, unit);
    }

    // `less` microseconds are there without any of the counted things. Ratios are to the first entry's cost
    // of one. Returns the microseconds of a frame.
    double add(Stage& stage, const std::string& value, double count, const std::function<void()>& frame,
               double less = 0) {
        const ViewCopy copy(stage);
        const auto timings =
            time_side_by_side({{"module", frame, {}}, {"memcpy", copy, {}}}, options_.plan());
        const double microseconds = timings[0].microseconds;
        const double each = count > 0 ? (microseconds - less) / count : 0;
        if (first_ == 0) first_ = each;
        const double relative = first_ > 0 ? each / first_ : 0;
        report_.add(Measurement{"growth", "landscape", what_, two_planes.text(), stage.bits_per_pixel(),
                                stage.view(), value, "module", microseconds, relative});
        std::printf("| %-18s | %9.1f us | %9.5f us | %5.2f |\n", value.c_str(), microseconds, each,
                    microseconds / timings[1].microseconds);
        return microseconds;
    }

  private:
    const Options& options_;
    Report& report_;
    std::string what_;
    double first_ = 0;
};

void grow_view(const Options& options, Report& report) {
    Series series(options, report, "pixels of the view", "pixel");
    for (const Size view : {Size{160, 100}, {320, 200}, {640, 400}, {1280, 800}, {1920, 1200}}) {
        const Pictures pictures = paint_landscape(map_size(view));
        Stage stage(view, 32, pictures);
        stage.load(options.module);
        Show show(stage, two_planes);
        check_frame(stage, show, two_planes, step, "growth, view " + text(view));
        series.add(stage, text(view), view.width * view.height, [&] { show.draw(step); });
    }
}

void grow_map(const Options& options, Report& report) {
    Series series(options, report, "size of the map", "frame");
    for (const std::int32_t factor : {1, 2, 4, 8}) {
        const Size view{320, 200};
        const Size map{view.width * factor + 37, view.height * factor + 11};
        const Pictures pictures = paint_landscape(map);
        Stage stage(view, 32, pictures);
        stage.load(options.module);
        Show show(stage, two_planes);
        check_frame(stage, show, two_planes, step, "growth, map " + text(map));
        series.add(stage, text(map), 1, [&] { show.draw(step); });
    }
}

void grow_processes(const Options& options, Report& report) {
    Series series(options, report, "processes shown", "process");
    const Size view{640, 480};
    const Pictures pictures = paint_landscape(map_size(view));
    Stage stage(view, 32, pictures);
    stage.load(options.module);
    Show show(stage, two_planes);
    check_frame(stage, show, two_planes, {}, "growth, processes");  // before the first of them is there
    double without = 0;
    std::int32_t there = 0;
    for (const std::int32_t count : {0, 10, 100, 1000, 10000}) {
        for (; there < count; ++there)
            stage.add_process(20 + there * 7 % (view.width - 40), 20 + there / 3 % (view.height - 40));
        const double frame = series.add(
            stage, std::to_string(count), count, [&] { show.draw({}); }, without);
        if (count == 0) without = frame;
    }
}

void grow_scrolls(const Options& options, Report& report) {
    Series series(options, report, "scrolls", "scroll");
    const Size view{320, 200};
    const Pictures pictures = paint_landscape(map_size(view));
    Stage stage(view, 32, pictures);
    stage.load(options.module);
    std::deque<Show> shows;
    for (const std::int32_t count : {1, 2, 5, 10}) {
        while (static_cast<std::int32_t>(shows.size()) < count)
            shows.emplace_back(stage, two_planes, static_cast<std::int32_t>(shows.size()));
        for (Show& show : shows) check_frame(stage, show, two_planes, step, "growth, scrolls");
        series.add(stage, std::to_string(count), count, [&] {
            for (Show& show : shows) show.draw(step);
        });
    }
}

}  // namespace

void measure_growth(const Options& options, Report& report) {
    const auto wanted = [&](const char* name) { return options.wants(std::string("growth, ") + name); };
    if (wanted("view")) grow_view(options, report);
    if (wanted("map")) grow_map(options, report);
    if (wanted("processes")) grow_processes(options, report);
    if (wanted("scrolls")) grow_scrolls(options, report);
}

}  // namespace bench
