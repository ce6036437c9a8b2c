// Numbers at the end of their range, sizes beyond memory, and what the module owes the host at the end: what
// random games meet too seldom or do not look at.
#include <doctest/doctest.h>

#include <climits>

#include "tests/module/allocation.h"
#include "tests/module/module_fixture.h"
#include "tests/replaced.h"

namespace {

using namespace tests;

constexpr Rect kView{8, 39, 4, 27};  // region 1

// Declared first, so that it outlives the module.
struct Allocator {
    ModuleAllocator memory;
};
struct LimitsFixture : Allocator, Fixture {
    explicit LimitsFixture(host::Fence fence = host::Fence::after) : Fixture(8, fence) {
        memory.attach(SCROLL2D_MODULE);
        for (const std::int32_t graph : {1, 2}) map(graph, 150, 120, {{20, 20}});
        region(1, kView);
    }
    ~LimitsFixture() {
        engine.unload();
        CHECK(memory.live.empty());
        CHECK(memory.bad_frees == 0);
    }
    void region(std::int32_t number, const Rect& r) { engine.regions().define(number, r.x, r.y, r.x2, r.y2); }
    [[nodiscard]] host::Map& at(std::int32_t graph) { return *engine.files().find_map(kFile, graph); }
};

TEST_CASE_FIXTURE(LimitsFixture,
                  "a buffer that does not fit in 31 bits is a failed allocation, computed without overflow") {
    map(7, 10, 10);
    const struct {
        std::int32_t width, height, value;
    } rows[] = {{65536, 65536, 65536},         // (height + 1) x width is 2^32 + 65536
                {65536, 65535, 0},             // 2^32
                {1, INT_MAX, INT_MIN},         // 2^31
                {INT_MAX, 1, -2},              // 2^32 - 2
                {INT_MAX, INT_MAX, INT_MIN}};  // 2^62 - 2^31
    for (const auto& row : rows) {
        CAPTURE(row.width);
        CAPTURE(row.height);
        CHECK(call("scroll_set_destination", {0, kFile, 7, -1}) == 1);
        start(0, 1);
        CHECK(draw());
        at(7).record().width = row.width;
        at(7).record().height = row.height;
        // A shortage of one size is told at one draw of many, and at each call.
        for (int frame = 0; frame < 3; ++frame) CHECK_FALSE(draw());
        CHECK(errors() == std::vector<ScriptError>{{100, "RVK_mod_scroll2D", 0, 0, row.value}});
        CHECK(call("scroll_set_destination", {0, kFile, 7, -1}) == host::failure);
        CHECK(errors() == std::vector<ScriptError>{{100, "SCROLL_SET_DESTINATION", 0, 0, 0}});
        CHECK(call("scroll_start", {0, kFile, 1, 0, -1, 0}) == host::failure);
        CHECK(errors() == std::vector<ScriptError>{{100, "SCROLL_START", 0, 0, row.value}});
        CHECK_FALSE(running(0));
        CHECK(memory.live.empty());
        CHECK(memory.largest < 10000);
        map(7, 10, 10);
    }
}

TEST_CASE_FIXTURE(LimitsFixture, "a shortage is told once, and again after a draw") {
    start(0, 1, 0, 1);
    memory.fail(1, true);
    for (int round = 0; round < 2; ++round) {
        region(1, {8, 49, 4, 27});
        for (int frame = 0; frame < 2; ++frame) CHECK_FALSE(draw());
        CHECK(errors().size() == 1);
        region(1, kView);
        CHECK(draw());
    }
}

TEST_CASE("numbers at the ends of their range neither trap nor reach outside") {
    constexpr std::int32_t kEnds[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
    for (const host::Fence fence : {host::Fence::after, host::Fence::before}) {
        LimitsFixture f(fence);
        ProcessLocals& hero = f.engine.processes().create(host::screen_coordinates);
        const auto shown = [&] { return f.draw() && f.shows(kView, f.at(1), f.plane(1)); };
        for (const std::int32_t flags : {0, 15})
            for (const std::int32_t a : kEnds)
                for (const std::int32_t b : kEnds) {
                    f.start(0, 1, 2, 1, flags);
                    f.script(0, "z") = a;
                    f.aim_script(1, {a, b});
                    f.aim_script(2, {b, a});
                    CHECK(shown());
                    if (flags == 15) CHECK(f.plane(1) == Position{a, b});
                    f.script(0, "camera") = host::Processes::id_of(hero);
                    f.script(0, "ratio") = a;
                    f.script(0, "speed") = b;
                    f.script(0, "region2") = 1;
                    hero.x = b;
                    hero.y = a;
                    hero.resolution = b;
                    CHECK(shown());
                    f.script(0, "camera") = 0;
                    f.region(1, {a, b, b, a});
                    f.draw();
                    f.region(1, kView);
                }
        CHECK(f.errors().empty());
    }
}

TEST_CASE("what ends all scrolls gives their buffers back from scroll 9 down to 0") {
    const std::function<void(LimitsFixture&)> ends[] = {
        [](LimitsFixture& f) { f.engine.unload(); },
        [](LimitsFixture& f) { f.services().StopAllScroll(); },
    };
    for (const auto& end : ends) {
        LimitsFixture f;
        for (const std::int32_t number : {4, 9, 0}) {
            f.region(2 + number, {0, 9 + number, 0, 9});
            f.start(number, 1, number == 4 ? 2 : 0, 2 + number);
        }
        end(f);
        CHECK((f.memory.freed == std::vector<std::size_t>{19 * 11, 14 * 11, 14 * 11, 10 * 11}));
    }
}

// A process may be deleted by a start, and its end may have consequences in the host.
TEST_CASE_FIXTURE(LimitsFixture,
                  "a start goes by what is there once the processes of before have ended: globals, maps") {
    const auto start_while = [&](std::int32_t graph1, std::int32_t graph2, auto in_between) {
        start(0, 1, 0, 1);
        engine.processes().create(host::scroll_coordinates);
        engine.processes().on_delete = [&](std::int32_t) { in_between(); };
        return call("scroll_start", {0, kFile, graph1, graph2, 1, 0});
    };
    CHECK(start_while(2, 0, [&] { engine.move_globals(); }) == 0);
    CHECK(script(0, "graph1") == 2);
    CHECK(script(0, "x0") == 20);
    CHECK(start_while(1, 2, [&] { at(2).record().pixels = nullptr; }) == 0);
    CHECK(draw());
    CHECK(start_while(1, 0, [&] { at(1).record().pixels = nullptr; }) == host::failure);
    CHECK(errors() == std::vector<ScriptError>{{112, "SCROLL_START", 0, 3, 1}});
}

TEST_CASE_FIXTURE(LimitsFixture, "a slot may call the module: what was at work goes on with its own scroll") {
    start(0, 1, 0, 1);
    start(1, 1, 0, 1);
    script(0, "camera") = host::Processes::id_of(engine.processes().create(host::screen_coordinates));
    const Replaced<&ProcessServices::ProcessExists> exists(engine.process_services(), [&](std::int32_t) {
        return call("scroll_refresh", {1});  // 1: it is there
    });
    CHECK(call("scroll_move", {0}) == 1);
    CHECK(plane(1, 0) == Position{0, 0});
    CHECK(plane(1, 1) == Position{20, 20});
    const Replaced<&Graphics2DInterface::GetMap> get_map(graphics(),
                                                         [&](std::int32_t file, std::int32_t graph) {
                                                             services().StopScroll(1);
                                                             return get_map.original(file, graph);
                                                         });
    CHECK(call("scroll_set_destination", {1, 0, 0, -1}) == 1);
    CHECK(script(1, "x0") == 0);  // not what it was at
    const Replaced<&ProcessServices::ProcessExists> stops(engine.process_services(), [&](std::int32_t) {
        services().StopScroll(0);
        return 1;
    });
    CHECK_FALSE(draw());
}

}  // namespace
