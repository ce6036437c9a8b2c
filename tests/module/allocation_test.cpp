// Every allocation on every path fails once, and from then on.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include "tests/module/allocation.h"

#include <doctest/doctest.h>

#include "tests/module/module_fixture.h"

namespace {

using namespace tests;

constexpr Rect kSmall{8, 39, 4, 27};
constexpr Rect kLarge{2, 61, 1, 44};
constexpr Rect kLarger{2, 61, 1, 45};

// Declared first, so that it outlives the module.
struct Allocator {
    ModuleAllocator memory;
};
struct MemoryFixture : Allocator, Fixture {
    explicit MemoryFixture(std::int32_t bits_per_pixel = 8) : Fixture(bits_per_pixel) {
        memory.attach(SCROLL2D_MODULE);
        for (const std::int32_t graph : {1, 2}) map(graph, 150, 120, {{graph, 7}});
        map(7, 50, 40);
        region(kSmall);
    }
    ~MemoryFixture() {
        memory.heal();
        engine.unload();
        CHECK(memory.live.empty());
        CHECK(memory.bad_frees == 0);
    }
    void region(const Rect& r) { engine.regions().define(1, r.x, r.y, r.x2, r.y2); }
    [[nodiscard]] std::int32_t buffer_bytes(const Rect& view) {
        return (view.y2 - view.y + 2) * (view.x2 - view.x + 1) *
               host::bytes_per_pixel(engine.video().bits_per_pixel);
    }
    void change_depth(std::int32_t bits_per_pixel) {
        host::ModeChange how;
        how.before_update = [this] {
            for (const std::int32_t graph : {1, 2}) map(graph, 150, 120);
            map(7, 50, 40);
        };
        engine.change_video_mode({.width = kWidth, .height = kHeight, .bits_per_pixel = bits_per_pixel}, how);
    }
};

// What a call does that allocates: a scene, the call, and what is left when it fails.
struct Path {
    std::string name;
    std::function<void(MemoryFixture&)> prepare;
    std::function<void(MemoryFixture&)> act;
    int allocations;  // when all goes well
    // The error for the n-th allocation; nothing where the call has no report to give.
    std::function<std::optional<ScriptError>(MemoryFixture&, int nth)> error;
    std::size_t left;  // blocks held after the failure: those of before, or none
};

ScriptError no_memory(const char* function, std::int32_t value) {
    return {100, function, 0, 0, value};
}
std::optional<ScriptError> start_error(MemoryFixture& f, int nth) {
    return no_memory("SCROLL_START", nth == 1 ? f.buffer_bytes(kSmall) : 0);
}
std::optional<ScriptError> aim_error(MemoryFixture&, int) {
    return no_memory("SCROLL_SET_DESTINATION", 0);
}
void start_two(MemoryFixture& f) {
    f.start(0, 1, 2, 1);
}
void draw_frames(MemoryFixture& f) {
    for (int i = 0; i < 3; ++i) f.draw();
}
void start_and_change_depth(MemoryFixture& f) {
    f.start(0, 1, 2, 1);
    f.change_depth(32);
}

const Path kPaths[] = {
    {"start one plane", [](MemoryFixture&) {},
     [](MemoryFixture& f) {
         f.call("scroll_start", {0, kFile, 1, 0, 1, 0});
     },
     1, start_error, 0},
    {"start two planes", [](MemoryFixture&) {},
     [](MemoryFixture& f) {
         f.call("scroll_start", {0, kFile, 1, 2, 1, 0});
     },
     2, start_error, 0},
    {"restart", start_two,
     [](MemoryFixture& f) {
         f.call("scroll_start", {0, kFile, 2, 1, 1, 0});
     },
     2, start_error, 0},
    {"draw a larger view",
     [](MemoryFixture& f) {
         start_two(f);
         f.region(kLarge);
     },
     draw_frames, 2,
     [](MemoryFixture& f, int nth) -> std::optional<ScriptError> {
         return no_memory("RVK_mod_scroll2D", nth == 1 ? f.buffer_bytes(kLarge) : 0);
     },
     2},
    {"draw at another depth", start_and_change_depth, draw_frames, 2,
     [](MemoryFixture& f, int nth) -> std::optional<ScriptError> {
         return no_memory("RVK_mod_scroll2D", nth == 1 ? f.buffer_bytes(kSmall) : 0);
     },
     2},
    {"move at another depth", start_and_change_depth, [](MemoryFixture& f) { f.call("scroll_move", {0}); }, 2,
     [](MemoryFixture&, int) -> std::optional<ScriptError> { return {}; }, 2},
    {"refresh at another depth", start_and_change_depth,
     [](MemoryFixture& f) { f.call("scroll_refresh", {0}); }, 2,
     [](MemoryFixture&, int) -> std::optional<ScriptError> { return {}; }, 2},
    {"aim", start_two,
     [](MemoryFixture& f) {
         f.call("scroll_set_destination", {0, kFile, 7, -1});
     },
     2, aim_error, 2},
    {"aim into nothing", start_two,
     [](MemoryFixture& f) {
         f.engine.regions().define(2, 55, 0, 60, 9);  // outside map 7
         f.call("scroll_set_destination", {0, kFile, 7, 2});
     },
     2, aim_error, 2},
};

// A scroll of the path must be good for drawing once there is memory again.
void check_usable(MemoryFixture& f) {
    f.memory.heal();
    f.errors();
    if (!f.running(0)) f.start(0, 1, 2, 1);
    CHECK(f.call("scroll_set_destination", {0, 0, 0, 1}) == 1);
    f.region(kLarge);
    CHECK(f.draw());
    const std::int32_t front = f.script(0, "graph1");
    CHECK(f.shows(kLarge, *f.engine.files().find_map(kFile, front), f.plane(1)));
    CHECK(f.memory.live.size() == (f.script(0, "graph2") != 0 ? 2 : 1));
    CHECK(f.call("scroll_stop", {0}) == 1);
    CHECK(f.memory.live.empty());
    CHECK(f.errors().empty());
}

TEST_CASE("a failing allocation is reported once, leaks nothing and leaves a scroll that can go on") {
    for (const Path& path : kPaths) {
        CAPTURE(path.name);
        {
            MemoryFixture f;
            path.prepare(f);
            f.memory.heal();
            path.act(f);
            REQUIRE(f.memory.made == path.allocations);
            CHECK(f.errors().empty());
            check_usable(f);
        }
        for (int nth = 1; nth <= path.allocations; ++nth) {
            for (const bool for_good : {false, true}) {
                CAPTURE(nth);
                CAPTURE(for_good);
                MemoryFixture f;
                path.prepare(f);
                const std::optional<ScriptError> expected = path.error(f, nth);
                f.memory.fail(nth, for_good);
                path.act(f);
                CHECK(f.errors() == (expected ? std::vector{*expected} : std::vector<ScriptError>{}));
                CHECK(f.memory.live.size() == path.left);
                check_usable(f);
            }
        }
    }
}

TEST_CASE(
    "without memory a draw keeps view and buffers, tries again at every frame, and tells each size that "
    "finds none once") {
    MemoryFixture f;
    start_two(f);
    const std::map<void*, std::size_t> before = f.memory.live;
    for (const int nth : {1, 2}) {
        f.engine.screen().fill(9);
        for (const Rect& wanted : {kLarge, kLarger}) {
            f.region(wanted);
            for (int frame = 0; frame < 3; ++frame) {
                f.memory.fail(nth, true);
                CHECK_FALSE(f.draw());
                CHECK(f.memory.made == nth);  // it did try
                CHECK((f.memory.live == before));
                CHECK(f.scheduled(0) == kSmall);
            }
            CHECK(f.errors() ==
                  std::vector{no_memory("RVK_mod_scroll2D", nth == 1 ? f.buffer_bytes(wanted) : 0)});
        }
        CHECK(Fixture::shows(f.engine.screen(), {0, -1, 0, -1}, f.engine.screen(), {0, 0}, 9));
        CHECK(f.move({30 + nth, 30}) == Position{30 + nth, 30});
        f.region(kSmall);  // good frames, so that the next shortage is told again
        CHECK(f.draw());
        CHECK(f.shows(kSmall, *f.engine.files().find_map(kFile, 1), {30 + nth, 30}));
    }
}

TEST_CASE("what ends all scrolls gives their buffers back from scroll 9 down to 0") {
    const std::function<void(MemoryFixture&)> ends[] = {
        [](MemoryFixture& f) { f.engine.unload(); },
        [](MemoryFixture& f) { f.services().StopAllScroll(); },
    };
    for (const auto& end : ends) {
        MemoryFixture f;
        for (const std::int32_t number : {4, 9, 0}) {
            f.engine.regions().define(2 + number, 0, 0, 9 + number, 9);
            f.start(number, 1, number == 4 ? 2 : 0, 2 + number);
        }
        end(f);
        CHECK((f.memory.freed == std::vector<std::size_t>{19 * 11, 14 * 11, 14 * 11, 10 * 11}));
    }
}

}  // namespace
