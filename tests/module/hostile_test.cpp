// What scripts and hosts do between two calls that nobody planned for. Map pixels, the screen, the region
// table and the script globals end at unreadable pages, in front or behind, so that one byte too far is a
// crash.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>

#include "tests/module/allocation.h"
#include "tests/module/module_fixture.h"

namespace {

using namespace tests;
using host::Fence;

constexpr Rect kView{8, 39, 4, 27};

struct FencedFixture : Fixture {
    explicit FencedFixture(Fence fence, std::int32_t bits_per_pixel = 8) : Fixture(bits_per_pixel, fence) {
        for (const std::int32_t graph : {1, 2}) map(graph, 150, 120, {{20, 20}});
        region(1, kView);
    }
    ~FencedFixture() { CHECK(errors().empty()); }
    void region(std::int32_t number, const Rect& r) { engine.regions().define(number, r.x, r.y, r.x2, r.y2); }
    [[nodiscard]] host::Map& at(std::int32_t graph) { return *engine.files().find_map(kFile, graph); }
    void mode(std::int32_t width, std::int32_t height, std::int32_t bits_per_pixel) {
        host::ModeChange how;
        how.before_update = [&] {
            if (bytes_per_pixel(at(1).bits_per_pixel()) == host::bytes_per_pixel(bits_per_pixel)) return;
            for (const std::int32_t graph : {1, 2}) map(graph, 150, 120, {{20, 20}});
        };
        engine.change_video_mode({.width = width, .height = height, .bits_per_pixel = bits_per_pixel}, how);
    }
    // Nothing may be drawn or moved, and nothing reported.
    void check_left_out(std::int32_t moved) {
        const Position before = plane(1);
        aim_script(1, {before.x + 1, before.y + 20});
        CHECK_FALSE(draw());
        CHECK(call("scroll_move", {0}) == moved);
        CHECK(plane(1) == before);
    }
    static std::int32_t bytes_per_pixel(std::int32_t bits) { return host::bytes_per_pixel(bits); }
};

template <class Test>
void with_fences(Test test) {
    for (const Fence fence : {Fence::after, Fence::before}) {
        CAPTURE(fence == Fence::after);
        test(fence);
    }
}

TEST_CASE("a region that moves past the edge, or a smaller screen, cuts the view") {
    with_fences([](Fence fence) {
        for (const std::int32_t mode : {0, 1, 2, 3}) {
            FencedFixture f(fence);
            f.start(0, 1, 2, 1, 15, mode);
            f.region(1, {50, 81, 30, 53});
            CHECK(f.draw());
            CHECK(f.scheduled(0) == Rect{50, 63, 30, 47});
            f.region(1, kView);
            CHECK(f.draw());
            f.mode(30, 20, 8);
            CHECK(f.draw());
            CHECK(f.scheduled(0) == Rect{8, 29, 4, 19});
            CHECK(f.shows({8, 29, 4, 19}, f.at(1), f.plane(1)));
            f.mode(8, 4, 8);  // the region lies outside now
            CHECK_FALSE(f.draw());
            f.engine.frame();
            f.mode(kWidth, kHeight, 8);
            CHECK(f.draw());
            CHECK(f.shows(kView, f.at(1), f.plane(1)));
        }
    });
}

TEST_CASE("scrolls that run through a change of depth are rebuilt before anything uses them") {
    const std::function<void(FencedFixture&)> first_uses[] = {
        [](FencedFixture&) {},
        [](FencedFixture& f) { CHECK(f.call("scroll_move", {0}) == 1); },
        [](FencedFixture& f) { CHECK(f.call("scroll_refresh", {0}) == 1); },
        [](FencedFixture& f) {
            CHECK(f.call("scroll_set_destination", {0, 0, 0, 1}) == 1);
        },
        [](FencedFixture& f) {
            f.region(1, {8, 50, 4, 30});
        },
    };
    with_fences([&](Fence fence) {
        for (const auto& use : first_uses) {
            FencedFixture f(fence);
            f.start(0, 1, 2, 1, 15, 1);
            for (const std::int32_t bits : {16, 32, 8, 32, 16, 8, 24, 16}) {
                CAPTURE(bits);
                const Position to{f.plane(1).x + 5, f.plane(1).y - 3};
                f.mode(kWidth, kHeight, bits);
                f.region(1, kView);
                f.aim_script(1, to);
                use(f);
                f.aim_script(1, to);
                CHECK(f.draw());
                f.aim_script(1, to);
                CHECK(f.draw());
                CHECK(f.shows({8, 39, 4, 27}, f.at(1), to));
            }
        }
    });
}

TEST_CASE("a map that shrank, lost its pixels or its size is left out; a refresh takes the new size") {
    const struct {
        std::function<void(FencedFixture&, std::int32_t)> spoil;
        bool refreshable;
    } rows[] = {
        {[](FencedFixture& f, std::int32_t graph) { f.map(graph, 149, 120); }, true},
        {[](FencedFixture& f, std::int32_t graph) { f.map(graph, 150, 119); }, true},
        {[](FencedFixture& f, std::int32_t graph) { f.map(graph, 1, 1); }, true},
        {[](FencedFixture& f, std::int32_t graph) { f.at(graph).record().pixels = nullptr; }, false},
        {[](FencedFixture& f, std::int32_t graph) { f.at(graph).record().width = 0; }, false},
        {[](FencedFixture& f, std::int32_t graph) { f.at(graph).record().height = -5; }, false},
    };
    with_fences([&](Fence fence) {
        for (const auto& row : rows) {
            for (const std::int32_t graph : {1, 2}) {
                for (const std::int32_t mode : {0, 1}) {
                    CAPTURE(&row - rows);
                    CAPTURE(graph);
                    FencedFixture f(fence);
                    f.start(0, 1, 2, 1, 15, mode);
                    row.spoil(f, graph);
                    f.check_left_out(0);
                    CHECK(f.call("scroll_refresh", {0}) == (row.refreshable ? 1 : 0));
                    CHECK(f.draw() == row.refreshable);
                    if (row.refreshable) CHECK(f.shows(kView, f.at(1), f.plane(1)));
                    // A re-aiming meanwhile has nothing to fill its buffers from; the next good draw does.
                    row.spoil(f, graph);
                    CHECK(f.call("scroll_set_destination", {0, 0, 0, -1}) == 1);
                    for (const std::int32_t good : {1, 2}) f.map(good, 150, 120);
                    CHECK(f.call("scroll_refresh", {0}) == 1);
                    CHECK(f.draw());
                    CHECK(f.shows(kWholeScreen, f.at(1), f.plane(1)));
                    // Nothing can start from such a map or draw into it.
                    if (row.refreshable) continue;
                    row.spoil(f, graph);
                    CHECK(f.call("scroll_set_destination", {0, kFile, graph, -1}) == 0);
                    CHECK(f.call("scroll_start", {1, kFile, graph, 0, -1, 0}) == host::failure);
                    CHECK(f.errors() == std::vector<ScriptError>{{112, "SCROLL_START", 0, 3, graph}});
                }
            }
        }
    });
}

TEST_CASE("a view that is cut to nothing allocates nothing and serves nobody as a size") {
    ModuleAllocator memory;
    with_fences([&](Fence fence) {
        FencedFixture f(fence);
        memory.attach(SCROLL2D_MODULE);
        f.start(0, 1, 2, 1, 15, 1);
        for (const Rect& r : {Rect{64, 90, 0, 9}, Rect{20, 10, 20, 10}, Rect{0, 9, 48, 60},
                              Rect{INT_MAX, INT_MAX, 0, 9}, Rect{-9, -1, -9, -1}}) {
            f.region(1, r);
            memory.heal();
            f.check_left_out(1);
            CHECK(memory.made == 0);
            CHECK(f.call("scroll_refresh", {0}) == 1);
            CHECK(f.call("scroll_set_destination", {0, 0, 0, 1}) == 0);
            f.mode(kWidth, kHeight, 16);
            CHECK_FALSE(f.draw());
            f.mode(kWidth, kHeight, 8);
            f.region(1, kView);
            CHECK(f.draw());
            CHECK(f.shows(kView, f.at(1), f.plane(1)));
        }
        f.engine.unload();
    });
}

TEST_CASE("regions beyond the host's table are no regions, wherever their number is kept") {
    with_fences([](Fence fence) {
        FencedFixture f(fence);
        ProcessLocals& hero = f.engine.processes().create(host::screen_coordinates);
        hero.x = hero.y = 60;
        f.region(31, {5, 36, 5, 28});
        f.start(0, 1, 0, 31);
        f.engine.regions().resize(2);
        CHECK_FALSE(f.draw());
        f.start(0, 1, 0, -1);
        ProcessLocals& sprite = f.engine.processes().create(host::scroll_coordinates);
        sprite.file = kFile;
        sprite.graph = 2;
        f.script(0, "camera") = host::Processes::id_of(hero);
        for (const std::int32_t number : {31, 2, 65536, INT_MAX}) {
            f.script(0, "region1") = f.script(0, "region2") = number;
            sprite.region = number;
            CHECK(f.draw());
            CHECK(f.scheduled(0) == kWholeScreen);
            CHECK(f.plane(1) == Position{60 - kWidth / 2, 60 - kHeight / 2});
        }
    });
}

TEST_CASE("a buffer that does not fit in 31 bits is a failed allocation, computed without overflow") {
    ModuleAllocator memory;
    Fixture f(8);
    memory.attach(SCROLL2D_MODULE);
    f.map(1, 150, 120);
    f.map(7, 10, 10);
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
        CHECK(f.call("scroll_set_destination", {0, kFile, 7, -1}) == 1);
        f.start(0, 1);
        CHECK(f.draw());
        f.engine.files().find_map(kFile, 7)->record().width = row.width;
        f.engine.files().find_map(kFile, 7)->record().height = row.height;
        CHECK_FALSE(f.draw());
        CHECK(f.errors() == std::vector<ScriptError>{{100, "RVK_mod_scroll2D", 0, 0, row.value}});
        CHECK(f.call("scroll_set_destination", {0, kFile, 7, -1}) == host::failure);
        CHECK(f.errors() == std::vector<ScriptError>{{100, "SCROLL_SET_DESTINATION", 0, 0, 0}});
        CHECK(f.call("scroll_start", {0, kFile, 1, 0, -1, 0}) == host::failure);
        CHECK(f.errors() == std::vector<ScriptError>{{100, "SCROLL_START", 0, 0, row.value}});
        CHECK_FALSE(f.running(0));
        CHECK(memory.live.empty());
        CHECK(memory.largest < 10000);
        f.map(7, 10, 10);
    }
    f.engine.unload();
}

TEST_CASE("a scroll whose destination map goes is moved, not drawn; one that is replaced is drawn into") {
    const auto test = [](Fence fence, std::int32_t file) {
        CAPTURE(file);
        FencedFixture f(fence);
        const auto canvas = [&](std::int32_t width, std::int32_t height) -> host::Map& {
            return f.engine.files().create_map(file, 7, width, height);
        };
        canvas(40, 30);
        ProcessLocals& hero = f.engine.processes().create(host::screen_coordinates);
        hero.x = hero.y = 70;
        f.start(0, 1, 2, -1, 0, 1);
        CHECK(f.call("scroll_set_destination", {0, file, 7, -1}) == 1);
        CHECK(f.draw());
        host::Map& other = canvas(30, 20);  // at another address, before the old one goes
        other.fill(0);
        CHECK(f.draw());
        CHECK(Fixture::shows(other, {0, 29, 0, 19}, f.at(1), f.plane(1)));
        f.engine.files().unload_map(file, 7);
        CHECK_FALSE(f.draw());
        CHECK_FALSE(f.scheduled(0).has_value());
        f.script(0, "camera") = host::Processes::id_of(hero);
        CHECK(f.call("scroll_move", {0}) == 1);
        CHECK(f.plane(1) == Position{70 - 15, 70 - 10});
        f.region(2, {0, INT_MAX, 0, INT_MAX});  // ends where the view ends, 30 x 20 pixels
        f.script(0, "region1") = 2;
        hero.x = hero.y = 100;
        CHECK(f.call("scroll_move", {0}) == 1);
        CHECK(f.plane(1) == Position{100 - 29, 100 - 19});
        f.script(0, "region1") = -1;
        hero.x = hero.y = 70;
        CHECK(f.call("scroll_start", {1, kFile, 1, 0, -1, 0}) == 1);
        host::Map& smaller = canvas(25, 15);
        smaller.fill(0);
        CHECK(f.draw());
        CHECK(Fixture::shows(smaller, {0, 24, 0, 14}, f.at(1), f.plane(1)));
        CHECK(f.plane(1) == Position{70 - 12, 70 - 7});
        // While it is gone a start has no view to lay out.
        f.engine.files().unload_map(file, 7);
        CHECK(f.call("scroll_start", {0, kFile, 1, 0, -1, 0}) == host::failure);
        CHECK(f.errors() == std::vector<ScriptError>{{146, "SCROLL_START", 0, 5, -1}});
        CHECK_FALSE(f.running(0));
    };
    for (const std::int32_t file : {kFile, 0}) with_fences([&](Fence fence) { test(fence, file); });
}

TEST_CASE("numbers at the ends of their range neither trap nor reach outside") {
    constexpr std::int32_t kEnds[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
    with_fences([&](Fence fence) {
        FencedFixture f(fence);
        ProcessLocals& hero = f.engine.processes().create(host::screen_coordinates);
        for (const std::int32_t flags : {0, 15}) {
            for (const std::int32_t a : kEnds) {
                for (const std::int32_t b : kEnds) {
                    f.start(0, 1, 2, 1, flags);
                    f.script(0, "z") = a;
                    f.aim_script(1, {a, b});
                    f.aim_script(2, {b, a});
                    CHECK(f.draw());
                    if (flags == 15) CHECK(f.plane(1) == Position{a, b});
                    CHECK(f.shows(kView, f.at(1), f.plane(1)));
                    f.script(0, "camera") = host::Processes::id_of(hero);
                    f.script(0, "ratio") = a;
                    f.script(0, "speed") = b;
                    f.script(0, "region2") = 1;
                    hero.x = b;
                    hero.y = a;
                    hero.resolution = b;
                    CHECK(f.draw());
                    CHECK(f.shows(kView, f.at(1), f.plane(1)));
                    f.script(0, "camera") = 0;
                    f.region(1, {a, b, b, a});
                    f.draw();
                    f.region(1, kView);
                }
            }
        }
    });
}

TEST_CASE("an entry that names no scroll draws nothing") {
    FencedFixture f(Fence::after);
    f.start(0, 1, 0, 1);
    CHECK(f.services().BlitScroll2D(nullptr) == 0);
    for (const std::int32_t id : {-1, 10, INT32_MIN, INT32_MAX, 1}) {
        __RVKBlit2D__ entry{};
        entry.id = id;
        CHECK(f.services().BlitScroll2D(&entry) == 0);
        CHECK(entry.drawn == 0);
    }
}

// A process may be deleted by a start, and its end may have consequences in the host.
TEST_CASE("a start finds the script's globals wherever they are once the processes of before have ended") {
    FencedFixture f(Fence::after);
    f.start(0, 1, 0, 1);
    f.engine.processes().create(host::scroll_coordinates);
    f.engine.processes().on_delete = [&](std::int32_t) { f.engine.move_globals(); };
    f.start(0, 2, 0, 1);
    CHECK(f.script(0, "graph1") == 2);
    CHECK(f.mirrored(1) == Position{20, 20});
}

}  // namespace
