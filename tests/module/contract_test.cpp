// What games beside the model do not show: the order of a function's tests and of the calls into the host,
// what a host may answer only now and then, and numbers at the very edge.
#include <doctest/doctest.h>

#include <climits>

#include "tests/module/module_fixture.h"

namespace {

using namespace tests;
using G = Graphics2DInterface;

constexpr Rect kView{10, 41, 20, 43};   // region 1
constexpr std::int32_t kUndefined = 3;  // a region that was never defined

struct ContractFixture : Fixture {
    ContractFixture() {
        map(1, 200, 150, {{80, 40}});
        map(2, 90, 80);
        engine.regions().define(1, kView.x, kView.y, kView.x2, kView.y2);
    }
    ProcessLocals& process(std::int32_t z = 0) {
        ProcessLocals& p = engine.processes().create(host::scroll_coordinates);
        p.file = kFile;
        p.graph = 2;
        p.z = z;
        return p;
    }
};

// ---- The order of tests

TEST_CASE_FIXTURE(ContractFixture,
                  "of several wrong arguments the first in the order of the tests is reported") {
    engine.files().create_file(6);  // holds nothing
    Replaced<&G::RegionDefined> defined(graphics(), [&](std::int32_t region) {
        CHECK(region >= 0);
        CHECK(region < engine.regions().count());
        return defined.original(region);
    });
    struct Step {
        std::int32_t code, argument;  // code 0: fails in silence
        std::size_t mended;           // what is put right for the next step, and how
        std::int32_t by;
    };
    // Everything is wrong at first.
    const auto mend = [&](const char* function, const char* name, Words a, const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            CAPTURE(a);
            const std::int32_t value = step.code != 0 ? a[static_cast<std::size_t>(step.argument - 1)] : 0;
            CHECK(engine.call(function, a).value == host::failure);
            CHECK(errors() == (step.code == 0
                                   ? std::vector<ScriptError>{}
                                   : std::vector<ScriptError>{{step.code, name, 0, step.argument, value}}));
            a[step.mended] = step.by;
        }
        return engine.call(function, a).value;
    };
    start(0, 1, 2, 1);
    CHECK(mend("scroll_start", "SCROLL_START", {10, -1, -1, -1, -2, 0, 4},
               {{107, 1, 0, INT_MIN},
                {107, 1, 0, 0},
                {109, 2, 1, 64},
                {109, 2, 1, 6},
                {110, 3, 2, 1000},
                {110, 3, 2, 998},
                {110, 4, 3, 999},
                {111, 2, 1, 1},
                {108, 5, 4, 32},
                {108, 5, 4, kUndefined},
                {108, 5, 4, 1},
                {0, 0, 6, 3},
                {112, 3, 3, 2}}) == 0);
    CHECK(script(0, "graph1") == 2);
    // What is not there is no error of an aim: a missing map, graph 0 of a file.
    CHECK(mend("scroll_set_destination", "SCROLL_SET_DESTINATION", {10, -1, -1, -2},
               {{131, 1, 0, -2},
                {131, 1, 0, 0},
                {109, 2, 1, 64},
                {109, 2, 1, 1},
                {110, 3, 2, 256},
                {110, 3, 2, 99},
                {108, 4, 3, 32},
                {108, 4, 3, kUndefined},
                {108, 4, 3, -1}}) == 0);
    CHECK(call("scroll_set_destination", {-1, kFile, 0, -1}) == 0);
    CHECK(draw());
    CHECK(shows(kView, *engine.files().find_map(kFile, 2), {0, 0}));
}

TEST_CASE_FIXTURE(ContractFixture, "a destination in file 0 is looked up again like any other") {
    start(0, 1);
    engine.files().create_map(0, 1, 2 * kWidth, 2 * kHeight);
    CHECK(call("scroll_set_destination", {0, 0, 1, -1}) == 1);
    CHECK(draw());
    engine.files().create_map(0, 1, 2 * kWidth, 2 * kHeight);  // in place of the first
    CHECK(draw());
    engine.files().unload_map(0, 1);
    CHECK_FALSE(draw());
}

TEST_CASE_FIXTURE(ContractFixture, "any count of arguments but seven means six, and mode 0") {
    host::Map& holed = map(5, kWidth, kHeight);
    holed.set_pixel(0, 0, 0);
    Replaced<&HostRuntime::ParamCount> count(engine.runtime(), [] { return 8; });
    CHECK(call("scroll_start", {0, kFile, 5, 0, -1, 0}) == 0);
    engine.screen().fill(9);
    CHECK(draw());
    CHECK(engine.screen().pixel(0, 0) == 0);
}

// ---- The order of calls

TEST_CASE_FIXTURE(ContractFixture,
                  "the processes are walked once for each scroll that ends, and for a service") {
    int walks = 0;
    Replaced<&ProcessServices::FirstProcessOfType> first(engine.process_services(), [&](std::int32_t type) {
        ++walks;
        CHECK(type == 1);
        return first.original(type);
    });
    const struct {
        std::function<void()> stop;
        int walks;
    } rows[] = {
        {[&] { call("scroll_stop", {7}); }, 0},  {[&] { services().StopScroll(7); }, 1},  // idle all the same
        {[&] { services().StopScroll(10); }, 0}, {[&] { call("scroll_stop", {2}); }, 1},
        {[&] { call("scroll_stop", {-1}); }, 2}, {[&] { services().StopAllScroll(); }, 1}};
    for (const auto& row : rows) {
        CAPTURE(&row - rows);
        for (const std::int32_t num : {2, 5}) start(num, 1);
        walks = 0;
        row.stop();
        CHECK(walks == row.walks);
    }
}

TEST_CASE_FIXTURE(ContractFixture, "a reset stops all scrolls by the service in the host's table") {
    start(0, 1);
    static int stops;
    stops = 0;
    ScrollSystemInterface table = services();
    table.StopAllScroll = [] { ++stops; };
    const ScrollSystemInterface* const own = std::exchange(graphics().ScrollSystem, &table);
    host::ModeChange reset;
    reset.reset = true;
    engine.change_video_mode({.width = 50, .height = 40, .bits_per_pixel = 8}, reset);
    graphics().ScrollSystem = own;
    CHECK(stops == 1);
    CHECK(running(0));
}

TEST_CASE_FIXTURE(ContractFixture, "a refresh asks GetFile about a changed file alone, up to FileCount") {
    std::string asked;
    Replaced<&G::GetFile> get_file(graphics(), [&](std::int32_t file) {
        asked += std::to_string(file) + " ";
        return get_file.original(file);
    });
    engine.files().create_map(2, 1, 150, 120);
    const struct {
        std::int32_t file;
        const char* asked;
        std::int32_t result;
    } rows[] = {{kFile, "", 1}, {2, "2 ", 1}, {64, "64 ", 0}, {65, "", 0}, {-1, "", 0}};
    for (const auto& row : rows) {
        CAPTURE(row.file);
        start(0, 1, 0, 1);
        asked.clear();
        script(0, "file") = row.file;
        CHECK(call("scroll_refresh", {0}) == row.result);
        CHECK(asked == row.asked);
    }
    asked.clear();
    script(1, "file") = 2;  // an idle scroll
    CHECK(call("scroll_refresh", {1}) == 0);
    CHECK(asked.empty());
}

TEST_CASE_FIXTURE(ContractFixture,
                  "one list serves all scrolls: selected, filled, sorted, drawn, cleared, left") {
    std::string calls;
    bool refuse = false;  // a list
    bool full = false;    // no list takes an entry more
    Graphics2DInterface& g = graphics();
    Replaced<&G::SelectBlitList> select(g, [&](void* list) {
        calls += list != nullptr ? "select " : "main ";
        if (list != nullptr) CHECK(list == engine.blit_lists().find("SCROLL2D"));
        return refuse ? 0 : select.original(list);
    });
    Replaced<&G::NewBlit> new_blit(g, [&]() -> __RVKBlit2D__* {
        calls += "new ";
        return full ? nullptr : new_blit.original();
    });
    Replaced<&G::BlitListCount> count(g, [&] { return calls += "count ", count.original(); });
    __RVKBlit2D__ first{};
    Replaced<&G::SortBlitList> sort(g, [&] {
        first = *engine.blit_lists().current().entries().front();
        return calls += "sort ", sort.original();
    });
    Replaced<&G::GetBlitList> get(g, [&] { return calls += "get ", get.original(); });
    Replaced<&G::ClearBlitList> clear(g, [&] { return calls += "clear ", clear.original(); });
    Replaced<&G::BlitSprite> sprite(g, [&](__RVKBlit2D__* e) {
        calls += "draw" + std::to_string(e->z) + " ";
        if (e->z == 9) services().StopScroll(5);  // selects that one
        return 1;
    });
    const auto calls_of_draw = [&](bool drawn = true) {
        calls.clear();
        CHECK(draw() == drawn);
        return calls;
    };
    start(1, 1);  // keeps the processes alive over the restarts of scroll 0
    start(0, 1, 0, 1);
    CHECK(calls_of_draw() == "select count clear main ");
    for (const std::int32_t z : {5, 9, 5, 7}) process(z);
    CHECK(calls_of_draw() == "select new new new new count sort get draw9 draw7 draw5 draw5 clear main ");
    refuse = true;
    CHECK(calls_of_draw() == "select ");
    CHECK_FALSE(scheduled(0));
    refuse = false;

    // The layer entry comes first, and its routine draws the whole plane whatever the entry says, or with
    // none.
    start(0, 1, 0, 1, 0, 1);
    script(0, "z") = 7;
    engine.screen().fill(0);
    CHECK(calls_of_draw() == "select new new new new new count sort get draw9 draw7 draw5 draw5 clear main ");
    CHECK(first.z == 7);
    CHECK(shows(kView, *engine.files().find_map(kFile, 1), {80, 40}, 0));
    engine.screen().fill(0);
    CHECK(first.draw(nullptr) == 1);
    CHECK(shows(kView, *engine.files().find_map(kFile, 1), {80, 40}, 0));

    full = true;
    CHECK(calls_of_draw() == "select new new new new new count clear main ");
    CHECK_FALSE(scheduled(0));
    full = false;

    // Where there is nothing to draw on no list is touched.
    engine.regions().at(1) = {30, 20, 30, 20};
    CHECK(calls_of_draw(false).empty());
    CHECK(services().BlitScroll2D(nullptr) == 0);
}

TEST_CASE_FIXTURE(ContractFixture, "a graph at the limit of its file is not asked for") {
    engine.files().create_map(0, 255, 8, 8);
    start(0, 1);
    int asked = 0;
    Replaced<&G::GetMap> get_map(graphics(), [&](std::int32_t file, std::int32_t graph) {
        asked += file == 0 || graph == 1000 ? 1 : 0;
        return get_map.original(file, graph);
    });
    ProcessLocals& p = process();
    const std::int32_t rows[][3] = {{kFile, 1000, 0}, {0, 256, 0}, {0, 255, 1}};
    for (const auto& [file, graph, times] : rows) {
        p.file = file;
        p.graph = graph;
        asked = 0;
        CHECK(draw());
        CHECK(asked == times);
        CHECK(p.scroll_mark == 1);
    }
}

// ---- Edges

TEST_CASE_FIXTURE(ContractFixture, "follow regions are counted up to 65536") {
    engine.regions().resize(65538);
    engine.regions().at(65536) = engine.regions().at(65537) = {0, 10, 0, 10};
    ProcessLocals& hero = engine.processes().create(host::screen_coordinates);
    hero.x = 80 + 16;  // in the middle of the view
    hero.y = 40 + 12;
    for (const std::int32_t number : {65536, 65537}) {
        start(0, 1, 0, 1);
        script(0, "camera") = host::Processes::id_of(hero);
        script(0, "region1") = number;
        CHECK(call("scroll_move", {0}) == 1);
        CHECK(plane(1) == (number == 65536 ? Position{80 + 16, 40 + 22} : Position{80, 40}));
    }
}

TEST_CASE_FIXTURE(ContractFixture, "a graph table changes its direction at these angles") {
    for (const std::int32_t graph : {10, 11, 12, 13}) map(graph, 8, 8);
    start(0, 1);
    const Words four{4, 10, 11, -12, 13};
    const Words seven{7, 10, 11, 13, 10, 10, 10, 10};
    Words many(257, 10);
    many[0] = 256;
    many[1] = 11;
    many[256] = -12;
    // 360000 / 14 is 25714.28…: what the division drops moves the boundary.
    const struct {
        const Words& table;
        std::int32_t angle, graph;
    } rows[] = {{four, 44999, 10},  {four, 45000, 11},   {four, 224999, 12},  {four, 225000, 13},
                {four, 314999, 13}, {four, 315000, 10},  {four, -90000, 13},  {four, -360000, 10},
                {four, 360000, 10}, {four, 1170000, 11}, {four, INT_MIN, 13}, {seven, 25714, 10},
                {seven, 25715, 11}, {seven, 77143, 11},  {seven, 77144, 13},  {many, 703, 11},
                {many, 704, 10},    {many, 359296, 12},  {many, 359297, 11}};
    ProcessLocals& p = process();
    for (const auto& row : rows) {
        CAPTURE(row.angle);
        CAPTURE(row.table[0]);
        engine.processes().set_graph_table(host::Processes::id_of(p), row.table);
        p.angle = row.angle;
        p.flags = 0x1F1;
        CHECK(draw());
        CHECK(p.graph == row.graph);
        CHECK(p.flags == (row.graph == 12 ? 0xF1 : 0xF0));
        CHECK(p.angle == (row.angle % 360000 + 360000) % 360000);
    }
}

}  // namespace
