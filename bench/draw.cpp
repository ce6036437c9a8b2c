#include <memory>

#include "bench/composition.h"
#include "bench/parts.h"
#include "bench/peer.h"
#include "bench/progress.h"
#include "bench/view_copy.h"

namespace bench {
namespace {

struct Scene {
    const Kind& kind;
    const Family& family;
    const Variant& variant;
    std::int32_t bits_per_pixel;
    Size view;
    Motion motion;

    [[nodiscard]] Measurement measurement() const {
        return {"draw", kind.name, family.name, variant.text(), bits_per_pixel, view, motion.name, {}, 0, 0};
    }
    [[nodiscard]] std::string name() const { return measurement().name(); }
};

// A module that draws the scenes.
struct Build {
    std::string name;
    std::string file;
    void (Stage::*load)(const std::filesystem::path&) = &Stage::load;
};

std::vector<Build> builds_of(const Options& options) {
    std::vector<Build> builds{{"module", options.module}};
    if (!options.opened.empty()) builds.push_back({"straight", options.opened, &Stage::load_straight});
    if (!options.other.empty()) builds.push_back({"other", options.other});
    return builds;
}

bool is_odd(Size view) {
    return std::find(odd_view_sizes.begin(), odd_view_sizes.end(), view) != odd_view_sizes.end();
}

// Every kind of pictures moves by four in every view, and stands still in those that are not odd. Only the
// landscape fills the largest view, and shows how little other motions matter.
std::vector<Size> views_of(const Options& options, const Kind& kind) {
    if (options.quick) return {{320, 200}, {641, 480}};
    std::vector<Size> views(view_sizes.begin(), view_sizes.end() - 1);
    views.insert(views.end(), odd_view_sizes.begin(), odd_view_sizes.end());
    if (kind.paint == paint_landscape) views.push_back(largest_view);
    return views;
}

std::vector<Motion> motions_of(const Options& options, const Kind& kind, Size view) {
    if (options.quick || is_odd(view)) return {by_four};
    if (kind.paint == paint_landscape && view != largest_view) return {still, by_one, by_four, by_forty};
    return {still, by_four};
}

// The peers take much of the time, and what they cost hardly depends on the motion.
bool meets_peers(const Options& options, const Scene& scene) {
    return options.peers && !options.quick && !is_odd(scene.view) && scene.view != largest_view &&
           scene.motion.step == by_four.step;
}

// The scenes of one stage: those of a kind, a view and a depth, in the order of the table.
std::vector<Scene> scenes_of(const Options& options, const Kind& kind, Size view, std::int32_t bits) {
    std::vector<Scene> scenes;
    for (const Family& family : families()) {
        if (std::find(family.depths.begin(), family.depths.end(), bits) == family.depths.end()) continue;
        for (const Variant& variant : family.variants) {
            for (const Motion& motion : motions_of(options, kind, view)) {
                const Scene scene{kind, family, variant, bits, view, motion};
                if (options.wants(scene.name())) scenes.push_back(scene);
            }
        }
    }
    return scenes;
}

// Where turns begin: places far apart, so that calm and broken parts of the picture are seen.
Position start(Size view, int place) {
    const Size map = map_size(view);
    return {5 + map.width * place / 3, 3 + map.height * place / 3};
}

using Peers = std::vector<std::pair<std::string, std::unique_ptr<Peer>>>;

Peers make_peers(const Options& options, Stage& stage, const Variant& variant) {
    Peers peers;
    peers.emplace_back("SDL2", make_sdl_peer(stage, variant, false));
    peers.emplace_back("pixman", make_pixman_peer(stage, variant));
    if (options.run_length) peers.emplace_back("SDL2 run-length", make_sdl_peer(stage, variant, true));
    return peers;
}

// Compares a frame of every build, and of the peers, with the composition.
void check_pictures(Stage& stage, const Scene& scene, const std::vector<Build>& builds, const Peers& peers,
                    int place) {
    std::vector<std::byte> expected;
    Position front{}, back{};
    for (const Build& build : builds) {
        (stage.*build.load)(build.file);
        Show show(stage, scene.variant);
        show.go(start(scene.view, place));
        if (expected.empty()) {
            expected = check_frame(stage, show, scene.variant, scene.motion.step, scene.name());
            front = show.front();
            back = show.back();
        } else {
            stage.lay_backdrop();
            show.draw(scene.motion.step);
            expect_shown(stage, expected, 0, build.name + ", " + scene.name());
        }
    }
    for (const auto& [name, peer] : peers) {
        stage.lay_backdrop();
        peer->draw(front, back);
        expect_shown(stage, expected, peer_tolerance, name + ", " + scene.name());
    }
}

// Contenders: memcpy, the builds, then the peers.
std::vector<Timing> time_contenders(const Options& options, Stage& stage, const Scene& scene,
                                    const std::vector<Build>& builds, const Peers& peers) {
    const Position step = scene.motion.step;
    std::unique_ptr<Show> show;
    Position front{};
    std::vector<Contender> contenders{{"memcpy", ViewCopy(stage), {}}};
    for (const Build& build : builds) {
        const auto begin = [&](int place) {
            show.reset();
            (stage.*build.load)(build.file);
            show = std::make_unique<Show>(stage, scene.variant);
            show->go(start(scene.view, place));
        };
        contenders.push_back({build.name, [&] { show->draw(step); }, begin});
    }
    for (const auto& [name, peer] : peers) {
        const auto begin = [&](int place) { front = start(scene.view, place); };
        const auto pass = [&, peer = peer.get()] {
            front += step;
            peer->draw(front, front.halved());
        };
        contenders.push_back({name, pass, begin, 2, 2});
    }
    return time_side_by_side(contenders, options.plan());
}

double time_of(const std::vector<Timing>& timings, const std::string& name) {
    for (const Timing& timing : timings)
        if (timing.name == name) return timing.microseconds;
    return 0;
}

void add_to(Report& report, const Scene& scene, const std::vector<Timing>& timings) {
    const double memcpy = time_of(timings, "memcpy");
    for (const Timing& timing : timings) {
        Measurement m = scene.measurement();
        m.contender = timing.name;
        m.microseconds = timing.microseconds;
        m.ratio = timing.microseconds / memcpy;
        report.add(m);
    }
    Drawn drawn{&scene.kind, &scene.family, scene.bits_per_pixel, scene.view, scene.motion, 0, {}};
    drawn.microseconds = time_of(timings, "module");
    const auto compare = [&](Base base, double time) {
        if (time > 0) drawn.ratios[base] = drawn.microseconds / time;
    };
    compare(Base::memcpy, memcpy);
    compare(Base::straight, time_of(timings, "straight"));
    compare(Base::other, time_of(timings, "other"));
    compare(Base::peer, std::min(time_of(timings, "SDL2"), time_of(timings, "pixman")));
    compare(Base::run_length, time_of(timings, "SDL2 run-length"));
    report.add(drawn);
}

void measure_scene(const Options& options, Stage& stage, const Scene& scene, Report& report) {
    const std::vector<Build> builds = builds_of(options);
    Peers peers;
    if (meets_peers(options, scene)) peers = make_peers(options, stage, scene.variant);
    check_pictures(stage, scene, builds, peers, 0);
    add_to(report, scene, time_contenders(options, stage, scene, builds, peers));
    check_pictures(stage, scene, builds, {}, 1);
}

// Keeps the pictures of a kind and a view for the stages of every depth.
class Painter {
  public:
    const Pictures& pictures(const Kind& kind, Size view) {
        if (kind_ != &kind || view_ != view) pictures_ = kind.paint(map_size(view));
        kind_ = &kind;
        view_ = view;
        return pictures_;
    }

  private:
    const Kind* kind_ = nullptr;
    Size view_;
    Pictures pictures_;
};

// Calls `use` with each kind of pictures, and the scenes of each of its stages.
template <class Use>
void for_each_stage(const Options& options, Use use) {
    for (const Kind& kind : kinds()) {
        if (!options.kind.empty() && options.kind != kind.name) continue;
        for (const Size view : views_of(options, kind))
            for (const std::int32_t bits : {8, 16, 32})
                if (const auto scenes = scenes_of(options, kind, view, bits); !scenes.empty())
                    use(kind, view, bits, scenes);
    }
}

}  // namespace

void measure_drawing(const Options& options, Report& report) {
    int total = 0;
    for_each_stage(options, [&](const Kind&, Size, std::int32_t, const auto& scenes) {
        total += static_cast<int>(scenes.size());
    });
    Progress progress("draw", total);
    Painter painter;
    for_each_stage(options, [&](const Kind& kind, Size view, std::int32_t bits, const auto& scenes) {
        Stage stage(view, bits, painter.pictures(kind, view));
        for (const Scene& scene : scenes) {
            measure_scene(options, stage, scene, report);
            progress.step(scene.name());
        }
    });
    report.print_tables();
}

}  // namespace bench
