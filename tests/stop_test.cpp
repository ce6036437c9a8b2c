// Stopping, the walk over the processes, the update and release hooks, and the services.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

struct StopFixture : Fixture {
    int walks = 0;
    Replaced<&ProcessServices::FirstProcessOfType> first{engine.process_services(),
                                                         [this](std::int32_t type) {
                                                             ++walks;
                                                             CHECK(type == 1);
                                                             return first.original(type);
                                                         }};
    StopFixture() {
        map(1, 200, 150, {{20, 10}});
        map(2, 90, 80);
    }
    std::int32_t process(std::int32_t mask) {
        ProcessLocals& p = engine.processes().create(host::kScrollCoordinates);
        p.scroll_mask = mask;
        return host::Processes::id_of(p);
    }
    void disturb(std::int32_t num) {
        for (const host::GlobalField& field : engine.globals().structs().front().fields)
            script(num, field.name.c_str()) = 12345;
    }
    [[nodiscard]] bool at_defaults(std::int32_t num) {
        bool all = true;
        for (const host::GlobalField& field : engine.globals().structs().front().fields)
            all &= script(num, field.name.c_str()) == field.default_value;
        return all;
    }
    [[nodiscard]] std::string running_scrolls() {
        std::string digits;
        for (std::int32_t i = 0; i < 10; ++i)
            if (running(i)) digits += std::to_string(i);
        return digits;
    }
};

TEST_CASE_FIXTURE(StopFixture,
                  "scroll_stop counts, restores the element and ends the processes nobody shows") {
    const struct {
        const char* running;
        std::int32_t num, count;
        int walks;
        const char* left;
        Words masks;      // of the processes that are there
        Words surviving;  // masks of those that are left
    } rows[] = {
        {"25", -1, 2, 2, "", {0, 4, 36, 1}, {}},
        {"25", 2, 1, 1, "5", {0, 4, 36, 32, 1}, {0, 36, 32}},
        {"25", 3, 0, 0, "25", {0, 4, 1}, {0, 4, 1}},
        {"9", 9, 1, 1, "", {512, INT_MIN, -1}, {}},
        {"09", 0, 1, 1, "9", {512, INT_MIN, -1, 1, 511}, {512, -1}},
    };
    for (const auto& row : rows) {
        CAPTURE(row.running);
        CAPTURE(row.num);
        for (const char* c = row.running; *c != 0; ++c) start(*c - '0', 1, 2);
        for (const std::int32_t mask : row.masks) process(mask);
        for (std::int32_t i = 0; i < 10; ++i) disturb(i);
        walks = 0;
        CHECK(call("scroll_stop", {row.num}) == row.count);
        CHECK(walks == row.walks);
        CHECK(running_scrolls() == row.left);
        for (std::int32_t i = 0; i < 10; ++i) CHECK(at_defaults(i) == (row.num == -1 || row.num == i));
        Words masks;
        for (const std::int32_t id : engine.processes().ids())
            masks.push_back(engine.processes().find(id)->scroll_mask);
        CHECK(masks == row.surviving);
        services().StopAllScroll();
        CHECK(engine.processes().count() == 0);
    }
}

TEST_CASE_FIXTURE(StopFixture, "functions for one or all scrolls refuse other numbers and change nothing") {
    start(0, 1);
    disturb(0);
    const struct {
        const char* function;
        const char* name;
    } rows[] = {{"scroll_stop", "SCROLL_STOP"},       {"stop_scroll", "SCROLL_STOP"},
                {"scroll_move", "SCROLL_MOVE"},       {"move_scroll", "SCROLL_MOVE"},
                {"scroll_refresh", "SCROLL_REFRESH"}, {"refresh_scroll", "SCROLL_REFRESH"}};
    walks = 0;
    for (const auto& row : rows) {
        for (const std::int32_t num : {10, -2, INT_MIN, INT_MAX}) {
            CHECK(call(row.function, {num}) == host::kFailure);
            CHECK(errors() == std::vector<ScriptError>{{107, row.name, 0, 1, num}});
        }
    }
    CHECK(running_scrolls() == "0");
    CHECK(script(0, "z") == 12345);
    CHECK(plane(1) == Position{20, 10});
    CHECK(walks == 0);
}

TEST_CASE_FIXTURE(StopFixture, "the services stop in silence, idle scrolls too, and walk once") {
    start(3, 1);
    start(4, 1);
    process(8);
    disturb(5);
    for (const std::int32_t num : {10, -1, INT_MIN}) services().StopScroll(num);
    CHECK(walks == 0);
    CHECK(running_scrolls() == "34");
    services().StopScroll(5);  // idle: its element is restored and the walk is made
    CHECK(walks == 1);
    CHECK(at_defaults(5));
    CHECK(engine.processes().count() == 1);
    services().StopScroll(3);
    CHECK(walks == 2);
    CHECK(engine.processes().count() == 0);
    CHECK(running_scrolls() == "4");
    for (std::int32_t i = 0; i < 10; ++i) disturb(i);
    services().StopAllScroll();
    CHECK(walks == 3);
    CHECK(running_scrolls().empty());
    for (std::int32_t i = 0; i < 10; ++i) CHECK(at_defaults(i));
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(StopFixture,
                  "an update re-aims what draws on the screen and stops all on reset through the table") {
    start(0, 1);
    start(1, 1);
    host::Map& canvas = map(7, 40, 30);
    CHECK(call("scroll_set_destination", {1, kFile, 7, -1}) == 1);
    engine.change_video_mode({.width = 80, .height = 60, .bits_per_pixel = 8});
    CHECK(running_scrolls() == "01");
    CHECK(draw(0));
    CHECK(shows({0, 79, 0, 59}, *engine.files().find_map(kFile, 1), {20, 10}));
    CHECK(draw(1));
    CHECK(shows(canvas, {0, 39, 0, 29}, *engine.files().find_map(kFile, 1), {20, 10}));

    // An idle scroll is re-aimed as well: its next start takes the new screen.
    CHECK(call("scroll_stop", {0}) == 1);
    engine.change_video_mode({.width = 50, .height = 40, .bits_per_pixel = 8});
    start(0, 1);
    CHECK(scheduled(0) == Rect{0, 49, 0, 39});

    host::ModeChange reset;
    reset.reset = true;
    static int stops;
    stops = 0;
    ScrollSystemInterface table = services();
    table.StopAllScroll = [] { ++stops; };
    const ScrollSystemInterface* const own = graphics().ScrollSystem;
    graphics().ScrollSystem = &table;
    engine.change_video_mode({.width = 50, .height = 40, .bits_per_pixel = 8}, reset);
    graphics().ScrollSystem = own;
    CHECK(stops == 1);
    CHECK(running_scrolls() == "01");
    for (std::int32_t i = 0; i < 10; ++i) disturb(i);
    process(0);
    engine.change_video_mode({.width = 50, .height = 40, .bits_per_pixel = 8}, reset);
    CHECK(running_scrolls().empty());
    CHECK(engine.processes().count() == 0);
    for (std::int32_t i = 0; i < 10; ++i) CHECK(at_defaults(i));
}

TEST_CASE_FIXTURE(StopFixture, "the coordinate services answer for running scrolls that the mask names") {
    engine.regions().define(1, 16, 8, 47, 31);
    start(3, 1, 2, 1);
    aim_script(2, {5, 6}, 3);
    CHECK(move({100, 50}, 3) == Position{100, 50});
    aim_script(2, {5, 6}, 3);  // the jump of plane 1 has overwritten it
    CHECK(move({100, 50}, 3) == Position{100, 50});
    start(5, 1);
    const struct {
        std::int32_t num, mask, answer;
    } rows[] = {{3, 0, 1},  {3, 8, 1},  {3, -1, 1},      {3, 4, 0},  {3, ~8, 0}, {4, 0, 0},
                {-1, 0, 0}, {10, 0, 0}, {INT_MIN, 0, 0}, {5, 32, 1}, {5, 1, 0}};
    for (const auto& row : rows) {
        CAPTURE(row.num);
        CAPTURE(row.mask);
        __RVKRegion__ r{1, 2, 3, 4};
        __RVKPoint2D__ offset{1, 2};
        __RVKPoint2D__ plane1{1, 2};
        __RVKPoint2D__ plane2{1, 2};
        CHECK(services().GetScrollRegion(row.num, row.mask, 10, 20, 5, 5, &r) == row.answer);
        CHECK(services().GetScrollPoint(row.num, row.mask, &offset) == row.answer);
        CHECK(services().GetScrollPos(row.num, row.mask, &plane1, &plane2) == row.answer);
        CHECK(services().GetProcessInScroll(row.num, row.mask) == row.answer);
        if (row.num == 3 && row.answer == 1) {
            CHECK(Rect{r.x, r.x2, r.y, r.y2} == Rect{-74, -70, -22, -18});
            CHECK(Position{offset.x, offset.y} == Position{-84, -42});
            CHECK(Position{plane1.x, plane1.y} == Position{100, 50});
            CHECK(Position{plane2.x, plane2.y} == Position{5, 6});
        }
        if (row.answer == 1) continue;
        CHECK(Rect{r.x, r.x2, r.y, r.y2} == Rect{1, 2, 3, 4});
        for (const __RVKPoint2D__& p : {offset, plane1, plane2}) CHECK(Position{p.x, p.y} == Position{1, 2});
    }
    __RVKPoint2D__ p{};
    CHECK(services().GetScrollRegion(3, 0, 0, 0, 1, 1, nullptr) == 0);
    CHECK(services().GetScrollPoint(3, 0, nullptr) == 0);
    CHECK(services().GetScrollPos(3, 0, nullptr, nullptr) == 0);
    CHECK(services().GetScrollPos(3, 0, nullptr, &p) == 1);
    CHECK(Position{p.x, p.y} == Position{5, 6});
    CHECK(services().GetScrollPos(3, 0, &p, nullptr) == 1);
    CHECK(Position{p.x, p.y} == Position{100, 50});

    // Whether a scroll runs makes no difference to what its mask leaves out.
    for (const std::int32_t num : {5, 6}) {
        const std::int32_t bit = 1 << num;
        CHECK(services().GetProcessOutScroll(num, 0) == 0);
        CHECK(services().GetProcessOutScroll(num, 1) == 1);
        CHECK(services().GetProcessOutScroll(num, bit) == 0);
        CHECK(services().GetProcessOutScroll(num, ~bit) == 1);
    }
    for (const std::int32_t num : {-1, 10, INT_MIN}) CHECK(services().GetProcessOutScroll(num, 1) == 0);
}

}  // namespace
