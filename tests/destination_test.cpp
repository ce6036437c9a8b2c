// scroll_refresh and scroll_set_destination.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

constexpr Rect kView{8, 39, 4, 27};

struct RemapFixture : Fixture {
    RemapFixture() {
        for (const std::int32_t graph : {1, 2, 3, 4}) map(graph, 150, 120, {{graph, 10}});
        engine.files().create_map(2, 4, 150, 120);
        paint(*engine.files().find_map(2, 4), 9);
        engine.regions().define(1, kView.x, kView.y, kView.x2, kView.y2);
    }
    [[nodiscard]] const host::Map& at(std::int32_t graph, std::int32_t file = kFile) {
        return *engine.files().find_map(file, graph);
    }
    std::int32_t refresh(std::int32_t num, std::int32_t file, std::int32_t graph1, std::int32_t graph2) {
        script(num, "file") = file;
        script(num, "graph1") = graph1;
        script(num, "graph2") = graph2;
        return call("scroll_refresh", {num});
    }
};

TEST_CASE_FIXTURE(
    RemapFixture,
    "a refresh takes positive graphs, keeps the others, the view, the planes and the wrap bits") {
    start(2, 1, 0, 1);
    CHECK(refresh(2, kFile, 3, 4) == 1);
    CHECK(script(2, "graph1") == 3);
    CHECK(script(2, "graph2") == 4);  // no plane comes by a refresh, so nobody looks at it
    CHECK(draw(2));
    CHECK(shows(kView, at(3), {1, 10}));
    for (const std::int32_t kept : {0, -7}) {
        CHECK(refresh(2, kFile, kept, 0) == 1);
        CHECK(script(2, "graph1") == 3);
    }
    CHECK(refresh(2, 2, 4, 0) == 1);
    CHECK(draw(2));
    CHECK(shows(kView, at(4, 2), {1, 10}));

    start(2, 1, 2, 1, 0, 1);
    CHECK(refresh(2, kFile, -1, 3) == 1);
    CHECK(script(2, "graph1") == 1);
    CHECK(script(2, "graph2") == 3);
    aim_script(1, {5, 6}, 2);
    aim_script(2, {7, 8}, 2);
    CHECK(refresh(2, kFile, 0, 0) == 1);  // refills both planes where they stand and says so
    CHECK(mirrored(1, 2) == Position{1, 10});
    CHECK(mirrored(2, 2) == Position{2, 10});

    map(5, 20, 10);
    start(2, 5, 0, 1);  // repeats because it is smaller than the view, and goes on to after the refresh
    CHECK(refresh(2, kFile, 1, 0) == 1);
    CHECK(move({-40, 900}, 2) == Position{-40, 900});
    CHECK(draw(2));
    CHECK(shows(kView, at(1), {-40, 900}));
    start(2, 1, 0, 1);
    CHECK(refresh(2, kFile, 5, 0) == 1);  // and no bit is set by a refresh
    CHECK(plane(1, 2) == Position{20 - 32, 10 - 24});
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(
    RemapFixture,
    "a refresh asks GetFile about a changed file up to FileCount and ends at the first failure") {
    std::string asked;
    Replaced<&Graphics2DInterface::GetFile> get_file(graphics(), [&](std::int32_t file) {
        asked += std::to_string(file) + " ";
        return get_file.original(file);
    });
    const struct {
        std::int32_t file, graph;
        std::string asked;
        std::int32_t result;
    } rows[] = {{kFile, 1, "", 1}, {2, 4, "2 ", 1}, {64, 4, "64 ", 0}, {65, 4, "", 0},
                {-1, 4, "", 0},    {9, 4, "9 ", 0}, {1, 99, "", 0}};
    for (const auto& row : rows) {
        CAPTURE(row.file);
        start(0, 1, 0, 1);
        asked.clear();
        CHECK(refresh(0, row.file, row.graph, 0) == row.result);
        CHECK(asked == row.asked);
    }
    // File and graph are on record even though their map is missing.
    CHECK(refresh(0, 2, 77, 0) == 0);
    CHECK_FALSE(draw());
    engine.files().create_map(2, 77, 150, 120);
    paint(*engine.files().find_map(2, 77), 12);
    CHECK(refresh(0, 2, 0, 0) == 1);
    CHECK(script(0, "graph1") == 77);
    CHECK(draw());
    CHECK(shows(kView, at(77, 2), {1, 10}));

    for (const std::int32_t num : {1, 4, 6}) start(num, 1, 2, 1);
    CHECK(call("scroll_stop", {0}) == 1);
    CHECK(call("scroll_refresh", {-1}) == 3);
    for (const std::int32_t num : {1, 4, 6}) script(num, "graph2") = num == 4 ? 99 : 3;
    script(4, "graph1") = 3;
    aim_script(1, {50, 50}, 4);
    CHECK(call("refresh_scroll", {-1}) == 0);
    for (const std::int32_t num : {1, 4, 6}) CHECK(draw(num) == (num != 4));
    CHECK(call("scroll_refresh", {6}) == 1);
    CHECK(call("scroll_stop", {-1}) == 3);
    CHECK(call("scroll_refresh", {-1}) == 0);
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(RemapFixture,
                  "each wrong argument of scroll_set_destination has its code, in the order of the tests") {
    start(0, 1, 0, 1);
    const struct {
        Words arguments;
        std::int32_t code, argument;
    } rows[] = {
        {{10, -1, -1, -2}, 131, 1}, {{-2, 1, 1, -1}, 131, 1},  {{INT_MAX, 1, 1, -1}, 131, 1},
        {{0, -1, -1, -2}, 109, 2},  {{0, 64, 1, -1}, 109, 2},  {{-1, 1, -1, -2}, 110, 3},
        {{0, 1, 256, -1}, 110, 3},  {{0, 0, 256, -1}, 110, 3}, {{0, 1, 1, -2}, 108, 4},
        {{0, 1, 1, 32}, 108, 4},    {{0, 1, 999, 3}, 110, 3},  {{0, 1, 99, 3}, 108, 4},
    };
    for (const auto& row : rows) {
        CAPTURE(row.arguments);
        CHECK(engine.call("scroll_set_destination", row.arguments).value == host::kFailure);
        CHECK(errors() ==
              std::vector<ScriptError>{{row.code, "SCROLL_SET_DESTINATION", 0, row.argument,
                                        row.arguments[static_cast<std::size_t>(row.argument - 1)]}});
    }
    // What is not there is no error: a missing map, a map without a bitmap, graph 0 of a file.
    engine.files().find_map(kFile, 3)->entry().bitmap = nullptr;
    for (const std::int32_t graph : {99, 0, 3})
        CHECK(call("scroll_set_destination", {-1, kFile, graph, -1}) == 0);
    CHECK(errors().empty());
    CHECK(scheduled(0) == kView);
    CHECK(draw());
    CHECK(shows(kView, at(1), {1, 10}));
}

TEST_CASE_FIXTURE(
    RemapFixture,
    "a destination gives the view of running and idle scrolls, or is refused where that is empty") {
    host::Map& canvas = map(7, 40, 30);
    const struct {
        Rect region;
        std::optional<Rect> view;
    } rows[] = {
        {{5, 14, 6, 11}, Rect{5, 14, 6, 11}},     {{-9, 4, -9, 4}, Rect{0, 4, 0, 4}},
        {{30, 99, 20, 99}, Rect{30, 39, 20, 29}}, {{INT_MIN, INT_MAX, INT_MIN, INT_MAX}, Rect{0, 39, 0, 29}},
        {{39, 39, 29, 29}, Rect{39, 39, 29, 29}}, {{40, 50, 0, 9}, std::nullopt},
        {{0, 9, 30, 40}, std::nullopt},           {{20, 10, 0, 9}, std::nullopt},
        {{0, 9, 20, 19}, std::nullopt},           {{-9, -1, 0, 9}, std::nullopt},
    };
    for (const auto& row : rows) {
        CAPTURE(row.region);
        CHECK(call("scroll_set_destination", {-1, 0, 0, -1}) == 10);
        start(0, 1, 0, 1);
        engine.regions().define(2, row.region.x, row.region.y, row.region.x2, row.region.y2);
        paint(*engine.files().find_map(kFile, 1), 20);  // shows only after a refill
        aim_script(2, {5, 5});
        CHECK(call("scroll_set_destination", {-1, kFile, 7, 2}) == (row.view ? 10 : 0));
        CHECK(mirrored(2) == Position{0, 0});  // a running scroll is refilled in either case
        CHECK(scheduled(0) == row.view.value_or(kView));
        canvas.fill(0);
        engine.screen().fill(0);
        CHECK(draw());
        host::Bitmap& drawn = row.view ? static_cast<host::Bitmap&>(canvas) : engine.screen();
        CHECK(shows(drawn, row.view.value_or(kView), at(1), {1, 10}, 0));
        host::Bitmap& other = row.view ? engine.screen() : static_cast<host::Bitmap&>(canvas);
        CHECK(shows(other, {0, -1, 0, -1}, at(1), {0, 0}, 0));
        // A start lays its own region out on the destination that the idle scroll was given.
        start(5, 1, 0, -1);
        CHECK(scheduled(5) == (row.view ? Rect{0, 39, 0, 29} : kWholeScreen));
        CHECK(call("scroll_stop", {-1}) == 2);
        paint(*engine.files().find_map(kFile, 1), 1);
    }
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(RemapFixture, "one scroll is aimed alone, and stays aimed through stops") {
    map(7, 40, 30);
    start(0, 1, 2, 1);
    start(1, 1, 2, 1);
    CHECK(call("scroll_set_destination", {0, kFile, 7, -1}) == 1);
    CHECK(scheduled(0) == Rect{0, 39, 0, 29});
    CHECK(scheduled(1) == kView);
    CHECK(call("scroll_stop", {0}) == 1);
    start(0, 1);
    CHECK(scheduled(0) == Rect{0, 39, 0, 29});
    CHECK(call("scroll_set_destination", {0, 0, 0, 1}) == 1);
    CHECK(scheduled(0) == kView);
    CHECK(call("scroll_set_destination", {3, 0, 0, -1}) == 1);
    // Map 5 of file 0 is a map, not the screen.
    host::Map& system = engine.files().create_map(0, 5, 20, 20);
    CHECK(call("scroll_set_destination", {0, 0, 5, -1}) == 1);
    CHECK(draw());
    CHECK(shows(system, {0, 19, 0, 19}, at(1), plane(1)));
}

}  // namespace
