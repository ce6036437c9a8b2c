// The sprites inside a scroll: which processes are collected, as which entries, and in which order of calls.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <array>
#include <climits>
#include <cstring>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

constexpr Rect kView{10, 73, 20, 67};

// An entry as a sprite routine of the host got it.
struct Drawn {
    std::string routine;
    __RVKBlit2D__ entry;
    [[nodiscard]] std::uint32_t word(std::size_t i) const {
        std::uint32_t value;
        std::memcpy(&value, reinterpret_cast<const char*>(&entry) + 4 * i, 4);
        return value;
    }
};

// Scroll 2 shows the world from (80, 40) on in a view of 64 x 48 at (10, 20).
struct SpriteFixture : Fixture {
    std::vector<Drawn> drawn;
    using G = Graphics2DInterface;
    template <auto Slot>
    struct Recorder {
        Replaced<Slot> slot;
        Recorder(SpriteFixture& s, const char* name)
            : slot(s.graphics(), [&s, name](__RVKBlit2D__* e) {
                  s.drawn.push_back({name, *e});
                  return 1;
              }) {}
    };
    Recorder<&G::BlitSprite> plain{*this, "plain"};
    Recorder<&G::BlitSpriteScaled> scaled{*this, "scaled"};
    Recorder<&G::BlitSpriteRotated> rotated{*this, "rotated"};
    Recorder<&G::BlitSpriteRotatedScaled> rotated_scaled{*this, "rotated scaled"};
    Recorder<&G::BlitSpriteGeneral> general{*this, "general"};
    Recorder<&G::BlitSpriteRotatedGeneral> rotated_general{*this, "rotated general"};

    SpriteFixture() {
        engine.change_video_mode({.width = 100, .height = 100, .bits_per_pixel = 8});
        map(1, 400, 300, {{80, 40}});
        for (const std::int32_t graph : {10, 11, 12, 13, 999}) map(graph, 8, 8);
        engine.files().create_map(0, 255, 8, 8);
        engine.regions().define(1, kView.x, kView.y, kView.x2, kView.y2);
        start(2, 1, 0, 1);
    }
    ProcessLocals& process() {
        for (const std::int32_t id : engine.processes().ids()) engine.processes().destroy(id);
        ProcessLocals& p = engine.processes().create(host::kScrollCoordinates);
        p.file = kFile;
        p.graph = 10;
        p.scroll_mark = 7;
        return p;
    }
    // Draws the scroll; the one entry that was drawn, if any.
    std::optional<Drawn> pass() {
        drawn.clear();
        CHECK(draw(2));
        REQUIRE(drawn.size() <= 1);
        return drawn.empty() ? std::optional<Drawn>{} : drawn.front();
    }
};

TEST_CASE_FIXTURE(SpriteFixture, "a process is drawn, or skipped, or marked as well") {
    enum Result { drawn_and_marked, marked, skipped };
    const auto set = [](auto field, auto value) { return [=](ProcessLocals& p) { p.*field = value; }; };
    using P = ProcessLocals;
    const struct {
        std::function<void(P&)> change;
        Result result;
    } rows[] = {
        {[](P&) {}, drawn_and_marked},
        {set(&P::status, 4), drawn_and_marked},
        {set(&P::status, 7), drawn_and_marked},
        {set(&P::status, INT_MAX), drawn_and_marked},
        {set(&P::status, 0), skipped},
        {set(&P::status, 1), skipped},
        {set(&P::status, 3), skipped},
        {set(&P::status, -2), skipped},
        {set(&P::scroll_mask, 4), drawn_and_marked},
        {set(&P::scroll_mask, -1), drawn_and_marked},
        {set(&P::scroll_mask, ~4), skipped},
        {set(&P::scroll_mask, 2), skipped},
        {set(&P::word33, 0), skipped},
        {set(&P::word33, INT_MIN), skipped},
        {set(&P::file, -1), skipped},
        {set(&P::file, 64), skipped},
        {set(&P::file, 63), marked},  // in range, but there is none
        {set(&P::graph, 0), marked},
        {set(&P::graph, -10), marked},
        {set(&P::graph, 999), drawn_and_marked},
        {set(&P::graph, 1000), marked},
        {set(&P::graph, 500), marked},
        {[](P& p) { p.file = 0, p.graph = 255; }, drawn_and_marked},
        {[](P& p) { p.file = 0, p.graph = 256; }, marked},
        {[&](P&) { engine.files().find_file(kFile)->word1 = 0; }, marked},
        {[&](P&) { engine.files().find_map(kFile, 10)->entry().word0 = 0; }, marked},
        {[&](P&) { engine.files().find_map(kFile, 10)->entry().bitmap = nullptr; }, marked},
    };
    for (const auto& row : rows) {
        engine.files().find_file(kFile)->word1 = 1;
        map(10, 8, 8);
        ProcessLocals& p = process();
        row.change(p);
        CAPTURE(&row - rows);
        CHECK(pass().has_value() == (row.result == drawn_and_marked));
        CHECK(p.scroll_mark == (row.result == skipped ? 7 : 1));
    }
    // A code that reaches the limit of file 0 asks for no map.
    ProcessLocals& p = process();
    p.graph = 1000;
    int asked = 0;
    Replaced<&Graphics2DInterface::GetMap> get_map(graphics(), [&](std::int32_t file, std::int32_t graph) {
        asked += graph == 1000 ? 1 : 0;
        return get_map.original(file, graph);
    });
    CHECK_FALSE(pass().has_value());
    CHECK(asked == 0);
}

TEST_CASE_FIXTURE(SpriteFixture,
                  "an entry holds the words of its process, its place and the scroll's destination") {
    ProcessLocals& p = process();
    p.x = 1234;
    p.y = -1234;
    p.resolution = 10;
    p.z = 3;
    p.region = 0;
    p.word38 = 138;
    p.angle = -90000;
    p.size = 90;
    p.size_x = 91;
    p.size_y = 92;
    p.word43 = 143;
    p.word44 = 144;
    p.flags = 0x1F0;
    p.word46 = 146;
    p.word47 = 147;
    p.word48 = 148;
    p.word49 = 149;
    const std::optional<Drawn> d = pass();
    REQUIRE(d.has_value());
    const __RVKBlit2D__& e = d->entry;
    CHECK(Position{e.pos_x, e.pos_y} == Position{123 + 10 - 80, -123 + 20 - 40});
    CHECK(e.owner == &p);
    CHECK(e.bitmap == &engine.files().find_map(kFile, 10)->record());
    CHECK(e.target == &engine.screen().record());
    CHECK(e.graph_table == nullptr);
    const std::int32_t copied[][2] = {{14, 3},   {16, 0},   {17, 10},  {20, 138}, {21, -90000}, {22, 90},
                                      {23, 91},  {24, 92},  {25, 143}, {26, 144}, {27, 0x1F0},  {28, 146},
                                      {29, 147}, {30, 148}, {31, 149}, {36, 1}};
    for (const auto& [word, value] : copied)
        CHECK(d->word(static_cast<std::size_t>(word)) == static_cast<std::uint32_t>(value));
    // Nothing else is written; word 2 is the host's to clear.
    for (const std::size_t word : {0, 3, 4, 5, 6, 7, 8, 9, 10, 15, 18, 19, 32, 33, 34, 35, 41})
        CHECK(d->word(word) == host::pattern_word(word));
    CHECK(p.angle == -90000);
    CHECK(p.flags == 0x1F0);

    for (const std::int32_t resolution : {0, -3, INT_MIN}) {
        p.resolution = resolution;
        CHECK(pass()->entry.pos_x == 1234 + 10 - 80);
    }
}

TEST_CASE_FIXTURE(SpriteFixture,
                  "a graph table chooses by the angle, mirrors by the sign, and never rotates") {
    const Words four{4, 10, 11, -12, 13};
    std::vector<std::int32_t> many(257, 10);
    many[0] = 256;
    many[1] = 11;
    many[256] = -12;
    const struct {
        Words table;
        std::int32_t angle, graph, flags, normal_angle;
    } rows[] = {
        {four, 0, 10, 0xF0, 0},
        {four, 44999, 10, 0xF0, 44999},
        {four, 45000, 11, 0xF0, 45000},
        {four, 90000, 11, 0xF0, 90000},
        {four, 180000, 12, 0xF1, 180000},
        {four, 224999, 12, 0xF1, 224999},
        {four, 225000, 13, 0xF0, 225000},
        {four, 314999, 13, 0xF0, 314999},
        {four, 315000, 10, 0xF0, 315000},
        {four, -90000, 13, 0xF0, 270000},
        {four, -360000, 10, 0xF0, 0},
        {four, 360000, 10, 0xF0, 0},
        {four, 1170000, 11, 0xF0, 90000},
        {four, INT_MIN, 13, 0xF0, 276352},
        {{1, -999}, 359999, 999, 0xF1, 359999},
        // 360000 / 14 is 25714.28…: what the division drops moves the boundary.
        {{7, 10, 11, 13, 10, 10, 10, 10}, 25714, 10, 0xF0, 25714},
        {{7, 10, 11, 13, 10, 10, 10, 10}, 25715, 11, 0xF0, 25715},
        {{7, 10, 11, 13, 10, 10, 10, 10}, 77143, 11, 0xF0, 77143},
        {{7, 10, 11, 13, 10, 10, 10, 10}, 77144, 13, 0xF0, 77144},
        {many, 703, 11, 0xF0, 703},
        {many, 704, 10, 0xF0, 704},
        {many, 358593, 12, 0xF1, 358593},
        {many, 359296, 12, 0xF1, 359296},
        {many, 359297, 11, 0xF0, 359297},
    };
    for (const auto& row : rows) {
        CAPTURE(row.angle);
        CAPTURE(row.table[0]);
        ProcessLocals& p = process();
        engine.processes().set_graph_table(host::Processes::id_of(p), row.table);
        p.angle = row.angle;
        p.flags = 0x1F1;
        const std::optional<Drawn> d = pass();
        REQUIRE(d.has_value());
        CHECK(p.graph == row.graph);
        CHECK(p.flags == row.flags);
        CHECK(p.angle == row.normal_angle);
        CHECK(d->routine == "plain");
        CHECK(d->entry.graph_table == p.graph_table);
        CHECK(d->entry.flags == row.flags);
        CHECK(d->entry.angle == row.normal_angle);
        CHECK(d->entry.bitmap == &engine.files().find_map(kFile, row.graph)->record());
    }
    for (const std::int32_t count : {0, 257, -1, INT_MIN}) {
        ProcessLocals& p = process();
        engine.processes().set_graph_table(host::Processes::id_of(p), Words{count, 11, 11});
        p.angle = -5;
        p.flags = 0x1F1;
        CHECK_FALSE(pass().has_value());
        CHECK((p.angle == -5 && p.flags == 0x1F1 && p.graph == 10 && p.scroll_mark == 7));
    }
    ProcessLocals& p = process();  // no code at all: the table has had its say, but nothing is drawn
    engine.processes().set_graph_table(host::Processes::id_of(p), Words{1, 0});
    CHECK_FALSE(pass().has_value());
    CHECK((p.graph == 0 && p.scroll_mark == 1));
}

TEST_CASE_FIXTURE(SpriteFixture, "the routine follows from rotation, scale and the two general words") {
    const struct {
        std::int32_t angle, size, size_x, size_y, word43, word44;
        const char* routine;
        std::int32_t entry_angle;
    } rows[] = {
        {0, 100, 100, 100, 0, 0, "plain", 0},
        {0, 99, 100, 100, 0, 0, "scaled", 0},
        {0, 100, 101, 100, 0, 0, "scaled", 0},
        {0, 100, 100, 0, 0, 0, "scaled", 0},
        {0, 100, 100, 100, 1, 0, "general", 0},
        {0, 50, 100, 100, 0, -1, "general", 0},
        {1, 100, 100, 100, 0, 0, "rotated", 1},
        {1, 100, 100, 99, 0, 0, "rotated scaled", 1},
        {1, 100, 100, 100, 0, 1, "rotated general", 1},
        {1, 50, 100, 100, 1, 0, "rotated general", 1},
        {720000, 100, 100, 100, 0, 0, "plain", 0},
        {-90000, 100, 100, 100, 0, 0, "rotated", -90000},
        {450000, 100, 100, 100, 0, 0, "rotated", 90000},
        {INT_MIN, 100, 100, 100, 0, 0, "rotated", INT_MIN % 360000},
    };
    for (const auto& row : rows) {
        CAPTURE(row.routine);
        ProcessLocals& p = process();
        p.angle = row.angle;
        p.size = row.size;
        p.size_x = row.size_x;
        p.size_y = row.size_y;
        p.word43 = row.word43;
        p.word44 = row.word44;
        const std::optional<Drawn> d = pass();
        REQUIRE(d.has_value());
        CHECK(d->routine == row.routine);
        CHECK(d->entry.angle == row.entry_angle);
        CHECK(p.angle == row.angle);
    }
}

TEST_CASE_FIXTURE(SpriteFixture,
                  "an entry is clipped to the view, and to the process's region in world coordinates") {
    const struct {
        std::int32_t number;
        Rect region, clip;
    } rows[] = {
        {0, {100, 110, 50, 60}, kView},
        {-1, {100, 110, 50, 60}, kView},
        {32, {100, 110, 50, 60}, kView},
        {4, {100, 110, 50, 60}, kView},  // not defined
        {1, kView, {10, 3, 20, 47}},  // the view's own region, as a place in the world
        {3, {100, 199, 50, 149}, {30, 73, 30, 67}},
        {31, {100, 110, 50, 60}, {30, 40, 30, 40}},
        {3, {0, 80, 0, 40}, {10, 10, 20, 20}},
        {3, {-500, 500, -500, 500}, kView},
        {3, {80, 143, 40, 87}, kView},
        {3, {80, 142, 40, 86}, {10, 72, 20, 66}},
        {3, {300, 310, 50, 60}, {230, 73, 30, 40}},  // beyond the view: nothing is left
        {3, {0, 10, 50, 60}, {10, -60, 30, 40}},
    };
    for (const auto& row : rows) {
        CAPTURE(row.number);
        CAPTURE(row.region);
        if (row.number == 3 || row.number == 31)
            engine.regions().define(row.number, row.region.x, row.region.y, row.region.x2, row.region.y2);
        if (row.number == 0) engine.regions().at(0) = {100, 110, 50, 60};
        ProcessLocals& p = process();
        p.region = row.number;
        const std::optional<Drawn> d = pass();
        REQUIRE(d.has_value());
        CHECK(d->entry.region == row.number);
        CHECK(Rect{d->entry.clip_x, d->entry.clip_x2, d->entry.clip_y, d->entry.clip_y2} == row.clip);
    }
}

TEST_CASE_FIXTURE(SpriteFixture,
                  "one list serves all scrolls: selected, filled, sorted, drawn, cleared, left") {
    std::string calls;
    Graphics2DInterface& g = graphics();
    bool refuse = false;
    Replaced<&G::SelectBlitList> select(g, [&](void* list) {
        calls += list != nullptr ? "select " : "main ";
        if (list != nullptr) CHECK(list == engine.blit_lists().find("SCROLL2D"));
        return refuse ? 0 : select.original(list);
    });
    Replaced<&G::NewBlit> new_blit(g, [&] { return calls += "new ", new_blit.original(); });
    Replaced<&G::BlitListCount> count(g, [&] { return calls += "count ", count.original(); });
    __RVKBlit2D__ first{};
    Replaced<&G::SortBlitList> sort(g, [&] {
        calls += "sort ";
        first = *engine.blit_lists().current().entries().front();
        return sort.original();
    });
    Replaced<&G::GetBlitList> get(g, [&] { return calls += "get ", get.original(); });
    Replaced<&G::ClearBlitList> clear(g, [&] { return calls += "clear ", clear.original(); });
    Replaced<&G::BlitSprite> sprite(g, [&](__RVKBlit2D__* e) {
        calls += "draw" + std::to_string(e->z) + " ";
        CHECK(&engine.blit_lists().current() == engine.blit_lists().find("SCROLL2D"));
        return 1;
    });
    const auto order = [&] {
        calls.clear();
        CHECK(draw(2));
        return calls;
    };
    CHECK(order() == "select count clear main ");
    process().z = 5;
    for (const std::int32_t z : {9, 5, 7}) {
        ProcessLocals& p = engine.processes().create(host::kScrollCoordinates);
        p.file = kFile;
        p.graph = 10;
        p.z = z;
    }
    CHECK(order() == "select new new new new count sort get draw9 draw7 draw5 draw5 clear main ");
    refuse = true;
    CHECK(order() == "select ");
    refuse = false;

    // The layer entry comes first and holds its depth and its routine alone.
    start(1, 1);  // keeps the processes alive over the restart
    start(2, 1, 0, 1, 0, 1);
    script(2, "z") = 7;
    CHECK(order() == "select new new new new new count sort get draw9 draw7 draw5 draw5 clear main ");
    CHECK(first.z == 7);
    const Drawn words{"", first};
    for (std::size_t i = 0; i < sizeof first / 4; ++i)
        if (i != 2 && i != 14 && i != 44) CHECK(words.word(i) == host::pattern_word(i));
    // Its routine draws the whole plane whatever the entry says, or with none.
    engine.screen().fill(0);
    CHECK(first.draw(nullptr) == 1);
    CHECK(Fixture::shows(engine.screen(), kView, *engine.files().find_map(kFile, 1), {80, 40}, 0));
}

}  // namespace
