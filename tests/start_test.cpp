// scroll_start: validation, choice of maps, view, wrap bits, starting positions, restarts.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

constexpr std::int32_t kUndefined = 3;  // a region that was never defined

struct StartFixture : Fixture {
    StartFixture() {
        map(1, 100, 90, {{12, 9}});
        map(2, 80, 70, {{4, 3}, {50, 50}});
        engine.files().create_map(0, 255, 100, 100);
        engine.files().create_file(6);  // holds nothing
        engine.regions().define(1, 10, 5, 29, 14);
    }
    std::vector<ScriptError> failed_start(const Words& arguments) {
        errors();
        CHECK(engine.call("scroll_start", arguments).value == host::kFailure);
        return errors();
    }
};

TEST_CASE_FIXTURE(StartFixture, "each test of the arguments has its code, argument and value") {
    struct Row {
        Words arguments;
        std::int32_t code, argument, value;
    };
    const Row rows[] = {
        {{10, 1, 1, 2, -1, 0}, 107, 1, 10},
        {{-1, 1, 1, 2, -1, 0}, 107, 1, -1},
        {{INT_MIN, 1, 1, 2, -1, 0}, 107, 1, INT_MIN},
        {{0, -1, 1, 2, -1, 0}, 109, 2, -1},
        {{0, 64, 1, 2, -1, 0}, 109, 2, 64},
        {{0, 1, -1, 2, -1, 0}, 110, 3, -1},
        {{0, 1, 1000, 2, -1, 0}, 110, 3, 1000},
        {{0, 1, 1, -2, -1, 0}, 110, 4, -2},
        {{0, 1, 1, 1000, -1, 0}, 110, 4, 1000},
        {{0, 0, 256, 0, -1, 0}, 110, 3, 256},
        {{0, 0, 255, 256, -1, 0}, 110, 4, 256},
        {{0, 5, 1, 2, -1, 0}, 111, 2, 5},
        {{0, 6, 1, 2, -1, 0}, 111, 2, 6},
        {{0, 1, 1, 2, -2, 0}, 108, 5, -2},
        {{0, 1, 1, 2, 32, 0}, 108, 5, 32},
        {{0, 1, 1, 2, kUndefined, 0}, 108, 5, kUndefined},
        {{0, 1, 999, 998, -1, 0}, 112, 3, 999},
        {{0, 1, 999, 0, -1, 0}, 112, 3, 999},
    };
    start(0, 1, 2, 1);
    for (const Row& row : rows) {
        CAPTURE(row.arguments);
        CHECK(failed_start(row.arguments) ==
              std::vector<ScriptError>{{row.code, "SCROLL_START", 0, row.argument, row.value}});
    }
    for (const std::int32_t mode : {4, -1, INT_MIN}) CHECK(failed_start({0, 1, 1, 2, -1, 0, mode}).empty());
    // None of them stopped or changed the scroll that ran.
    CHECK(plane(1) == Position{12, 9});
    CHECK(scheduled(0) == Rect{10, 29, 5, 14});
    CHECK(script(0, "graph1") == 1);
}

TEST_CASE_FIXTURE(StartFixture,
                  "of several wrong arguments the first in the order of the tests is reported") {
    // Everything is wrong at first; each step mends what the one before it reported.
    Words a = {10, -1, -1, -1, -2, 0, 4};
    const struct {
        std::int32_t code, argument;
        std::size_t mended;
        std::int32_t by;
    } steps[] = {{107, 1, 0, 0},          {109, 2, 1, 6}, {110, 3, 2, 998}, {110, 4, 3, 999}, {111, 2, 1, 1},
                 {108, 5, 4, kUndefined}, {108, 5, 4, 1}, {0, 0, 6, 3},     {112, 3, 3, 2}};
    for (const auto& step : steps) {
        const std::vector<ScriptError> raised = failed_start(a);
        if (step.code == 0) {
            CHECK(raised.empty());  // a wrong mode fails before the maps are looked for, and in silence
        } else {
            CHECK(raised == std::vector<ScriptError>{{step.code, "SCROLL_START", 0, step.argument,
                                                      a[static_cast<std::size_t>(step.argument - 1)]}});
        }
        a[step.mended] = step.by;
    }
    CHECK(engine.call("scroll_start", a).value == 0);
    CHECK(script(0, "graph1") == 2);
}

TEST_CASE_FIXTURE(StartFixture, "graph2 behind graph1, or either alone, by the maps that are there") {
    map(0, 50, 50);
    const struct {
        std::int32_t asked1, asked2, graph1, graph2;
    } rows[] = {{1, 2, 1, 2},   {1, 0, 1, 0}, {1, 900, 1, 0}, {900, 2, 2, 0},
                {900, 0, 0, 0}, {0, 2, 0, 2}, {2, 2, 2, 2}};
    for (const auto& row : rows) {
        CAPTURE(row.asked1);
        CAPTURE(row.asked2);
        start(4, row.asked1, row.asked2);
        CHECK(script(4, "file") == kFile);
        CHECK(script(4, "graph1") == row.graph1);
        CHECK(script(4, "graph2") == row.graph2);
        // Plane 2 goes where the script says only when there is one.
        const Position before = plane(2, 4);
        aim_script(2, {before.x + 1, before.y}, 4);
        CHECK(call("scroll_move", {4}) == 1);
        CHECK(plane(2, 4).x - before.x == (row.graph2 != 0 ? 1 : 0));
    }
}

TEST_CASE_FIXTURE(StartFixture,
                  "planes start at their reference points, cut to the map, and are mirrored at once") {
    map(3, 100, 90, {{-5, 80}});
    map(4, 20, 90, {{-7, 0}});
    aim_script(1, {77, 77});
    aim_script(2, {77, 77});
    start(0, 1);
    CHECK(mirrored(1) == Position{12, 9});
    CHECK(mirrored(2) == Position{0, 0});  // all four are mirrored, with one plane too
    CHECK(draw());
    CHECK(shows(kWholeScreen, *engine.files().find_map(kFile, 1), {12, 9}));

    start(0, 3, 2);
    CHECK(plane(1) == Position{0, 90 - kHeight});
    CHECK(mirrored(1) == plane(1));
    CHECK(mirrored(2) == Position{4, 3});
    start(0, 4, 3, -1, 8);  // map 4 is narrower than the view, so it repeats; plane 2 repeats downwards
    CHECK(plane(1) == Position{-7, 0});
    CHECK(plane(2) == Position{0, 80});
    CHECK(plane(2) == mirrored(2));
    engine.files().find_map(kFile, 1)->set_control_points({});
    start(0, 1);
    CHECK(plane(1) == Position{0, 0});
}

TEST_CASE_FIXTURE(StartFixture, "the view is the region cut to the destination; empty is error 146") {
    struct Row {
        Rect region;
        std::optional<Rect> view;
    };
    const Row rows[] = {
        {{10, 29, 5, 14}, Rect{10, 29, 5, 14}},
        {{-10, 9, -20, 4}, Rect{0, 9, 0, 4}},
        {{10, 500, 5, 500}, Rect{10, 63, 5, 47}},
        {{0, 63, 0, 47}, kWholeScreen},
        {{63, 63, 47, 47}, Rect{63, 63, 47, 47}},
        {{63, 64, 47, 48}, Rect{63, 63, 47, 47}},
        {{20, 10, 30, 20}, Rect{20, 20, 30, 30}},
        {{-9, -5, 3, 2}, Rect{0, 0, 3, 3}},
        {{INT_MIN, INT_MAX, INT_MIN, INT_MAX}, kWholeScreen},
        {{INT_MAX, INT_MIN, 0, 9}, std::nullopt},
        {{64, 70, 0, 9}, std::nullopt},
        {{0, 9, 48, 50}, std::nullopt},
        {{INT_MAX, INT_MAX, 0, 9}, std::nullopt},
    };
    for (const Row& row : rows) {
        CAPTURE(row.region);
        engine.regions().define(2, row.region.x, row.region.y, row.region.x2, row.region.y2);
        start(0, 1);  // so that it is a restart that fails
        if (row.view) {
            start(0, 1, 2, 2);
        } else {
            CHECK(failed_start({0, 1, 1, 2, 2, 0}) ==
                  std::vector<ScriptError>{{146, "SCROLL_START", 0, 5, 2}});
        }
        CHECK(running(0) == row.view.has_value());
        CHECK(scheduled(0) == row.view);
    }
    start(0, 1);
    CHECK(scheduled(0) == kWholeScreen);
}

TEST_CASE_FIXTURE(StartFixture,
                  "a map repeats where the flags ask for it or where it is smaller than the view") {
    map(10, 200, 200);
    map(11, 63, 200);
    map(12, 200, 47);
    map(13, 64, 48);
    const Position far{1000, 1000};
    const Position cut{200 - kWidth, 200 - kHeight};
    const struct {
        std::int32_t graph, flags;
        Position reached;
    } rows[] = {{10, 0, cut},       {10, 1, {far.x, cut.y}}, {10, 2, {cut.x, far.y}}, {10, 3, far},
                {10, ~3, cut},      {11, 0, {far.x, cut.y}}, {12, 0, {cut.x, far.y}}, {13, 0, {0, 0}},
                {13, 2, {0, far.y}}};
    for (const auto& row : rows) {
        CAPTURE(row.graph);
        CAPTURE(row.flags);
        start(0, row.graph, 10, -1, row.flags);
        CHECK(move(far) == row.reached);
        CHECK(draw());
        CHECK(shows(kWholeScreen, *engine.files().find_map(kFile, row.graph), row.reached));
        // The same bits, two places up, for plane 2. The two planes are moved one after the other, since a
        // far jump of plane 1 overwrites the script's position of plane 2.
        start(1, 10, row.graph, -1, row.flags * 4);
        aim_script(2, far, 1);
        CHECK(move({0, 0}, 1) == Position{0, 0});
        CHECK(plane(2, 1) == row.reached);
    }
}

TEST_CASE_FIXTURE(StartFixture,
                  "a restart stops first, keeps the script element and counts its arguments afresh") {
    start(0, 1, 2, 1, 3, 2);
    script(0, "z") = 7;
    script(0, "speed") = 9;
    ProcessLocals& mine = engine.processes().create(host::kScrollCoordinates);
    mine.scroll_mask = 1;
    ProcessLocals& others = engine.processes().create(host::kScrollCoordinates);
    others.scroll_mask = 2;
    const std::int32_t mine_id = host::Processes::id_of(mine);
    const std::int32_t others_id = host::Processes::id_of(others);
    start(1, 1);
    CHECK(engine.processes().exists(mine_id));
    start(0, 1);
    CHECK_FALSE(engine.processes().exists(mine_id));
    CHECK(engine.processes().exists(others_id));
    CHECK(script(0, "z") == 7);
    CHECK(script(0, "speed") == 9);
    CHECK(script(0, "graph2") == 0);
    CHECK(scheduled(0) == kWholeScreen);
    CHECK(move({-4, 9}) == Position{0, 9});  // the wrap bits of before are gone
}

TEST_CASE_FIXTURE(StartFixture, "six arguments mean mode 0, and any count but seven means six") {
    host::Map& holed = map(5, 64, 48);
    holed.set_pixel(0, 0, 0);
    const auto hole = [&] {
        engine.screen().fill(9);
        CHECK(draw());
        return engine.screen().pixel(0, 0);
    };
    start(0, 5, 0, -1, 0, 2);
    CHECK(hole() == 9);
    CHECK(call("start_scroll", {0, kFile, 5, 0, -1, 0}) == 0);
    CHECK(hole() == 0);
    Replaced<&HostRuntime::ParamCount> count(engine.runtime(), [] { return 8; });
    CHECK(call("scroll_start", {0, kFile, 5, 0, -1, 0}) == 0);
    CHECK(hole() == 0);
}

}  // namespace
