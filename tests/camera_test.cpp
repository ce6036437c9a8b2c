// scroll_move: script positions, shifts and refills, camera, follow regions, speed, ratio.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

// The view is 32 x 24 at (8, 4); both planes stand at (100, 100) of maps that do not repeat.
constexpr Rect kView{8, 39, 4, 27};
constexpr Position kFrom{100, 100};

struct MoveFixture : Fixture {
    ProcessLocals& hero = engine.processes().create(host::kScreenCoordinates);

    MoveFixture() {
        map(1, 400, 300, {{kFrom.x, kFrom.y}});
        map(2, 400, 300, {{kFrom.x, kFrom.y}});
        engine.regions().define(1, kView.x, kView.y, kView.x2, kView.y2);
    }
    // The movement of plane 1 after a camera at a place given in destination pixels.
    Position follow(Position on_screen) {
        start(0, 1, 2, 1);
        script(0, "camera") = host::Processes::id_of(hero);
        hero.x = kFrom.x - kView.x + on_screen.x;
        hero.y = kFrom.y - kView.y + on_screen.y;
        CHECK(call("scroll_move", {0}) == 1);
        CHECK(mirrored(1) == plane(1));
        return {plane(1).x - kFrom.x, plane(1).y - kFrom.y};
    }
    void follow_regions(std::int32_t inner, std::int32_t outer, std::int32_t speed) {
        script(0, "region1") = inner;
        script(0, "region2") = outer;
        script(0, "speed") = speed;
    }
};

TEST_CASE_FIXTURE(MoveFixture, "a move of up to half the view is shifted, a longer one refilled") {
    // A refill mirrors all four positions and takes every pixel afresh; a shift mirrors its own plane and
    // copies only what comes into view. So after a refill the script's wish for plane 2 is lost, and changed
    // map pixels show at once.
    const struct {
        std::int32_t width, height;
        Position by;
        bool refilled;
    } rows[] = {
        {32, 24, {16, 12}, false},   {32, 24, {17, 0}, true},  {32, 24, {0, 13}, true},
        {32, 24, {-16, -12}, false}, {32, 24, {-17, 3}, true}, {32, 24, {3, -13}, true},
        {33, 25, {16, 12}, false},   {33, 25, {17, 0}, true},  {33, 25, {0, -13}, true},
        {1, 24, {1, 0}, true},       {1, 24, {0, 12}, false},  {32, 1, {0, -1}, true},
        {32, 1, {-16, 0}, false},    {2, 2, {1, -1}, false},   {2, 2, {2, 0}, true},
    };
    for (const auto& row : rows) {
        CAPTURE(row.width);
        CAPTURE(row.height);
        CAPTURE(row.by);
        host::Map& front = *engine.files().find_map(kFile, 1);
        paint(front, 1);
        engine.regions().define(2, 8, 4, 7 + row.width, 3 + row.height);
        start(0, 1, 2, 2);
        paint(front, 5);
        aim_script(2, {kFrom.x + 1, kFrom.y});
        const Position to{kFrom.x + row.by.x, kFrom.y + row.by.y};
        CHECK(move(to) == to);
        CHECK(plane(2).x == kFrom.x + (row.refilled ? 0 : 1));
        CHECK(mirrored(2) == plane(2));
        start(0, 1, 0, 2);
        paint(front, 6);
        CHECK(move(to) == to);
        CHECK(draw());
        if (row.width > 2 && row.height > 2) {
            host::Bitmap all_old(400, 300, 8, host::Fence::none);
            paint(all_old, 5);
            const std::int32_t x = row.by.x > 0 ? 0 : row.width - 1;  // of a column that stayed in view
            const std::int32_t y = row.by.y > 0 ? 0 : row.height - 1;
            const host::Bitmap& expected = row.refilled ? static_cast<host::Bitmap&>(front) : all_old;
            CHECK(engine.screen().pixel(8 + x, 4 + y) == expected.pixel(to.x + x, to.y + y));
        }
        paint(front, 1);
        CHECK(call("scroll_refresh", {0}) == 1);
        CHECK(draw());
        CHECK(shows({8, 7 + row.width, 4, 3 + row.height}, front, to));
    }
}

TEST_CASE_FIXTURE(MoveFixture,
                  "positions that the script writes are reached as far as the map goes, in any order") {
    start(0, 1, 0, 1);
    host::Map& front = *engine.files().find_map(kFile, 1);
    const Position edge{400 - 32, 300 - 24};
    const struct {
        Position to, reached;
    } steps[] = {{{103, 100}, {103, 100}}, {{110, 111}, {110, 111}},   {{94, 100}, {94, 100}},
                 {{-1, 100}, {0, 100}},    {{-9, 88}, {0, 88}},        {{0, 5}, {0, 5}},
                 {{16, -4}, {16, 0}},      {{INT_MAX, INT_MAX}, edge}, {{edge.x, 300}, edge},
                 {{367, 275}, {367, 275}}, {{368, 276}, edge},         {{INT_MIN, INT_MIN}, {0, 0}}};
    for (const auto& step : steps) {
        CAPTURE(step.to);
        CHECK(move(step.to) == step.reached);
        CHECK(mirrored(1) == step.reached);
        CHECK(draw());
        CHECK(shows(kView, front, step.reached));
    }
    // A move that the edge cancels is mirrored for its own plane and leaves the other pair alone.
    aim_script(2, {77, 78});
    CHECK(move({-3, 0}) == Position{0, 0});
    CHECK(mirrored(1) == Position{0, 0});
    CHECK(mirrored(2) == Position{77, 78});
}

TEST_CASE_FIXTURE(
    MoveFixture,
    "on a map smaller than the view without its wrap bit a fill and a shift differ at the edge") {
    start(0, 1, 0, 1);
    CHECK(move({0, 0}) == Position{0, 0});
    host::Map& narrow = map(1, 20, 10);
    CHECK(call("scroll_refresh", {0}) == 1);  // refills: 0 + 32 reaches the map's edge
    CHECK(plane(1) == Position{-12, -14});
    CHECK(mirrored(1) == Position{-12, -14});
    // A negative wish becomes 0, any other the edge. 12 columns are a shift, which stops there; 14 rows are a
    // refill, which cuts what has been cut once more: 0 to the edge, and the negative edge to 0.
    const struct {
        Position to, reached;
    } steps[] = {{{-20, 7}, {0, -14}}, {{5, 5}, {-12, -14}}, {{-20, -14}, {-12, -14}}, {{1, -20}, {0, -14}}};
    for (const auto& step : steps) {
        CAPTURE(step.to);
        CHECK(move(step.to) == step.reached);
        CHECK(mirrored(1) == step.reached);
        CHECK(draw());
        CHECK(shows(kView, narrow, plane(1)));
    }
}

TEST_CASE_FIXTURE(MoveFixture,
                  "the camera is centred, kept in the inner region, or brought to the edge of the outer") {
    engine.regions().at(2) = {18, 29, 12, 19};      // inner
    engine.regions().at(3) = {14, 33, 8, 23};       // outer
    engine.regions().at(4) = {30, 20, 25, 15};      // inside out
    engine.regions().at(5) = {-50, 500, -50, 500};  // cut to the destination
    engine.regions().at(6) = {20, 26, -9, 500};
    const struct {
        Position camera;
        std::int32_t inner, outer, speed;
        Position by;
    } rows[] = {
        {{24, 16}, -1, -1, 0, {0, 0}},  // the middle of the view
        {{29, 10}, -1, -1, 0, {5, -6}},
        {{29, 10}, -1, -1, 2, {5, -6}},  // without an outer region speed counts for nothing
        {{70, 16}, -1, -1, 0, {46, 0}},
        {{18, 12}, 2, -1, 0, {0, 0}},
        {{29, 19}, 2, -1, 0, {0, 0}},
        {{34, 19}, 2, -1, 0, {5, 0}},
        {{17, 20}, 2, -1, 0, {-1, 1}},
        {{25, 20}, 4, -1, 0, {5, 5}},  // inside out: the far edges win
        {{19, 14}, 4, -1, 0, {-11, -11}},
        {{31, 26}, 4, -1, 0, {11, 11}},
        {{70, -3}, 5, -1, 0, {7, -3}},
        {{63, 47}, 5, -1, 0, {0, 0}},
        {{24, 48}, 6, -1, 0, {0, 1}},
        {{33, 20}, 2, 3, 0, {4, 1}},
        {{33, 20}, 2, 3, 3, {3, 1}},
        {{33, 8}, 2, 3, 3, {3, -3}},
        {{33, 20}, 2, 3, -3, {4, 1}},
        {{33, 20}, 2, 3, INT_MAX, {4, 1}},
        {{34, 7}, 2, 3, 3, {1, -1}},  // outside the outer region: to its edge at once
        {{60, 40}, 2, 3, 1, {27, 17}},
        {{13, 24}, -1, 3, 1, {-1, 1}},
        {{29, 10}, -1, 3, 2, {2, -2}},
        {{25, 20}, -1, 4, 1, {-5, -5}},  // inside out: the near edges win
        {{31, 26}, 2, 4, 1, {11, 11}},
        {{29, 10}, 65537, INT_MIN, 1, {5, -6}},  // no regions
        {{29, 10}, -2, 65537, 1, {5, -6}},
        {{29, 10}, 32, 65536, 1, {5, -6}},  // not in the host's table
    };
    for (const auto& row : rows) {
        CAPTURE(row.camera);
        CAPTURE(row.inner);
        CAPTURE(row.outer);
        CAPTURE(row.speed);
        follow_regions(row.inner, row.outer, row.speed);
        CHECK(follow(row.camera) == row.by);
    }
    engine.regions().resize(65538);
    engine.regions().at(65536) = engine.regions().at(65537) = {0, 10, 0, 10};
    follow_regions(65536, -1, 0);
    CHECK(follow({24, 16}) == Position{14, 6});
    follow_regions(65537, 65537, 1);
    CHECK(follow({24, 16}) == Position{0, 0});
}

TEST_CASE_FIXTURE(MoveFixture, "odd views are halved downwards, and resolution divides toward zero") {
    engine.regions().define(1, 8, 4, 8 + 32, 4 + 24);  // 33 x 25
    start(0, 1, 0, 1, 3);
    script(0, "camera") = host::Processes::id_of(hero);
    const struct {
        std::int32_t x, y, resolution;
        Position reached;
    } rows[] = {{95, -95, 10, {9 - 16, -9 - 12}},
                {-95, 95, 10, {-9 - 16, 9 - 12}},
                {-95, 7, 0, {-95 - 16, 7 - 12}},
                {40, 7, -5, {40 - 16, 7 - 12}},
                {INT_MIN, INT_MAX, INT_MAX, {-1 - 16, 1 - 12}}};
    for (const auto& row : rows) {
        hero.x = row.x;
        hero.y = row.y;
        hero.resolution = row.resolution;
        aim_script(1, {1, 2});  // counts for nothing
        CHECK(call("scroll_move", {0}) == 1);
        CHECK(plane(1) == row.reached);
        CHECK(mirrored(1) == row.reached);
    }
}

TEST_CASE_FIXTURE(MoveFixture, "plane 2 follows by what plane 1 really moved, over the ratio") {
    const struct {
        std::int32_t ratio;
        Position by, followed;
    } rows[] = {{200, {9, -9}, {4, -4}},    {100, {9, -9}, {9, -9}},    {50, {3, -1}, {6, -2}},
                {-200, {9, -8}, {-4, 4}},   {300, {2, -2}, {0, 0}},     {300, {7, -11}, {2, -3}},
                {0, {9, -9}, {0, 0}},       {INT_MIN, {9, -9}, {0, 0}}, {1, {3, -4}, {268, -100}},
                {200, {0, -5000}, {0, -50}}};
    for (const auto& row : rows) {
        CAPTURE(row.ratio);
        CAPTURE(row.by);
        script(0, "ratio") = row.ratio;
        follow({24 + row.by.x, 16 + row.by.y});
        CHECK(plane(2) == Position{kFrom.x + row.followed.x, kFrom.y + row.followed.y});
    }
    // With ratio 0 nobody writes to the script's position of plane 2; otherwise it is overwritten even by a
    // movement of nothing.
    for (const std::int32_t ratio : {0, 200}) {
        script(0, "ratio") = ratio;
        follow({24, 16});
        aim_script(2, {1, 2});
        CHECK(call("scroll_move", {0}) == 1);
        CHECK(mirrored(2) == (ratio == 0 ? Position{1, 2} : kFrom));
        CHECK(plane(2) == kFrom);
    }
}

TEST_CASE_FIXTURE(MoveFixture,
                  "a camera that is not alive stops both planes; alpha is clamped all the same") {
    start(0, 1, 2, 1);
    const struct {
        std::int32_t written, clamped;
    } rows[] = {{300, 255}, {-5, 0}, {-1, 0}, {256, 255}, {17, 17}, {INT_MIN, 0}};
    for (const auto& row : rows) {
        script(0, "camera") = 4;  // an address that must not be read
        script(0, "alpha") = row.written;
        aim_script(1, {1, 2});
        aim_script(2, {3, 4});
        CHECK(call("scroll_move", {0}) == 1);
        CHECK(script(0, "alpha") == row.clamped);
        CHECK(plane(1) == kFrom);
        CHECK(plane(2) == kFrom);
        CHECK(mirrored(1) == Position{1, 2});
        CHECK(mirrored(2) == Position{3, 4});
    }
}

TEST_CASE_FIXTURE(MoveFixture,
                  "scroll_move counts running scrolls and ends at the first one whose map is gone") {
    map(3, 200, 200);
    map(4, 200, 200);
    start(1, 1, 0, 1);
    start(4, 3, 4, 1);
    start(8, 1, 0, 1);
    const auto moved = [&](std::int32_t num) {
        for (const std::int32_t i : {1, 4, 8}) aim_script(1, {plane(1, i).x + 1, plane(1, i).y}, i);
        return call("move_scroll", {num});
    };
    CHECK(moved(-1) == 3);
    CHECK(moved(4) == 1);
    CHECK(moved(0) == 0);
    CHECK(plane(1, 1).x == kFrom.x + 1);
    const std::int32_t before = plane(1, 8).x;
    for (const std::int32_t gone : {3, 4}) {
        Replaced<&Graphics2DInterface::GetMap> get_map(
            graphics(), [&](std::int32_t file, std::int32_t graph) {
                return graph == gone ? nullptr : get_map.original(file, graph);
            });
        const std::int32_t first = plane(1, 1).x;
        CHECK(moved(-1) == 0);
        CHECK(plane(1, 1).x == first + 1);
        CHECK(plane(1, 8).x == before);
        CHECK(moved(4) == 0);
    }
    CHECK(errors().empty());
}

}  // namespace
