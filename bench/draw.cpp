#include "bench/composition.h"
#include "bench/parts.h"
#include "bench/peer.h"
#include "bench/progress.h"
#include "bench/view_copy.h"

namespace bench {
namespace {

struct Scene {
    const Family& family;
    const Variant& variant;
    std::int32_t bits_per_pixel;
    Size view;
    Motion motion;

    [[nodiscard]] Measurement measurement() const {
        return {"draw", family.name, variant.text(), bits_per_pixel, view, motion.name, {}, 0, 0};
    }
};

// The scenes of one stage: those of a view and a depth, in the order of the table.
std::vector<Scene> scenes_of(const Options& options, Size view, std::int32_t bits) {
    std::vector<Scene> scenes;
    for (const Family& family : families()) {
        if (std::find(family.depths.begin(), family.depths.end(), bits) == family.depths.end()) continue;
        for (const Variant& variant : family.variants) {
            for (const Motion& motion : motions) {
                const bool in_subset = motion.step.x == 1 || motion.step.x == 4;
                if (options.quick && !in_subset) continue;
                const Scene scene{family, variant, bits, view, motion};
                if (options.wants(scene.measurement().name())) scenes.push_back(scene);
            }
        }
    }
    return scenes;
}

std::vector<std::byte> check_module(Stage& stage, const Scene& scene, Show& show) {
    return check_frame(stage, show, scene.variant, scene.motion.step, scene.measurement().name());
}

// First wanders about until the buffers begin at some pixel in the middle of their rings.
void check_pictures(Stage& stage, const Scene& scene, Show& show,
                    const std::vector<std::pair<std::string, Peer*>>& peers) {
    for (int i = 0; i < 50; ++i) show.move({37, i % 3 == 0 ? -11 : 13});
    const std::vector<std::byte> expected = check_module(stage, scene, show);
    for (const auto& [name, peer] : peers) {
        stage.lay_backdrop();
        peer->draw(show.front(), show.back());
        expect_shown(stage, expected, peer_tolerance, name + ", " + scene.measurement().name());
    }
}

using Peers = std::vector<std::pair<std::string, std::unique_ptr<Peer>>>;

Peers make_peers(const Options& options, Stage& stage, const Variant& variant) {
    Peers peers;
    if (!options.peers) return peers;
    peers.emplace_back("SDL2", make_sdl_peer(stage, variant, false));
    peers.emplace_back("pixman", make_pixman_peer(stage, variant));
    if (options.run_length) peers.emplace_back("SDL2 run-length", make_sdl_peer(stage, variant, true));
    return peers;
}

// Contenders: module, memcpy, then the peers.
std::vector<Timing> time_scene(const Options& options, Stage& stage, const Scene& scene, const Peers& peers) {
    Show show(stage, scene.variant);
    std::vector<std::pair<std::string, Peer*>> views;
    for (const auto& [name, peer] : peers) views.emplace_back(name, peer.get());
    check_pictures(stage, scene, show, views);

    const ViewCopy copy(stage);
    Position front{}, back{};
    std::vector<Contender> contenders{{"module", [&] { show.draw(scene.motion.step); }}, {"memcpy", copy}};
    for (const auto& [name, peer] : views) {
        const auto pass = [&, peer = peer] {
            front = {front.x + scene.motion.step.x, front.y + scene.motion.step.y};
            back = {front.x >> 1, front.y >> 1};
            peer->draw(front, back);
        };
        contenders.push_back({name, pass, 2});
    }
    std::vector<Timing> timings = time_side_by_side(contenders, options.plan());
    check_module(stage, scene, show);
    return timings;
}

void add_to(Report& report, const Scene& scene, const std::vector<Timing>& timings) {
    const double module = timings[0].microseconds;
    const double memcpy = timings[1].microseconds;
    for (const Timing& timing : timings) {
        Measurement m = scene.measurement();
        m.contender = timing.name;
        m.microseconds = timing.microseconds;
        m.ratio = timing.microseconds / memcpy;
        report.add(m);
    }
    report.add_drawn(scene.family, scene.bits_per_pixel, module / memcpy);
    if (timings.size() > 3) {
        const double peer = std::min(timings[2].microseconds, timings[3].microseconds);
        report.add_peer(scene.family, scene.bits_per_pixel, module / peer);
    }
    if (timings.size() > 4)
        report.add_run_length(scene.family, scene.bits_per_pixel, module / timings[4].microseconds);
}

void measure_stage(const Options& options, const std::vector<Scene>& scenes, const Pictures& pictures,
                   Progress& progress, Report& report) {
    Stage stage(options.module, scenes.front().view, scenes.front().bits_per_pixel, pictures);
    const Variant* variant = nullptr;
    Peers peers;
    for (const Scene& scene : scenes) {
        if (variant != &scene.variant) peers = make_peers(options, stage, scene.variant);
        variant = &scene.variant;
        add_to(report, scene, time_scene(options, stage, scene, peers));
        progress.step(scene.measurement().name());
    }
}

}  // namespace

void measure_drawing(const Options& options, Report& report) {
    int total = 0;
    const auto stages = [&](auto use) {
        for (const Size view : view_sizes) {
            if (options.quick && view.width != 320 && view.width != 1280) continue;
            std::unique_ptr<Pictures> pictures;  // of this view, once it is known that they are needed
            for (const std::int32_t bits : {8, 16, 32}) {
                const std::vector<Scene> scenes = scenes_of(options, view, bits);
                if (!scenes.empty()) use(view, scenes, pictures);
            }
        }
    };
    stages([&](Size, const auto& scenes, auto&) { total += static_cast<int>(scenes.size()); });
    Progress progress("draw", total);
    stages([&](Size view, const auto& scenes, auto& pictures) {
        if (!pictures) pictures = std::make_unique<Pictures>(map_size(view));
        measure_stage(options, scenes, *pictures, progress, report);
    });
    report.print_table();
}

}  // namespace bench
