// Scheduling, and the drawing of one scroll: view, maps, dispatch by planes and mode.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <climits>
#include <cstring>
#include <set>

#include "tests/module_fixture.h"

namespace {

using namespace tests;

constexpr Rect kView{8, 39, 4, 27};

struct FrameFixture : Fixture {
    FrameFixture() {
        map(1, 150, 120, {{10, 10}});
        map(2, 150, 120, {{20, 20}});
        engine.regions().define(1, kView.x, kView.y, kView.x2, kView.y2);
    }
    [[nodiscard]] const host::Map& at(std::int32_t graph) { return *engine.files().find_map(kFile, graph); }
    void region(std::int32_t x, std::int32_t x2, std::int32_t y, std::int32_t y2) {
        engine.regions().at(1) = {x, x2, y, y2};
    }
    // The numbers of the scrolls that a frame hook schedules, in the order of their entries.
    std::string schedule() {
        engine.run_hook(host::Hook::frame);
        std::string numbers;
        for (const __RVKBlit2D__* e : engine.blit_lists().main().entries()) numbers += std::to_string(e->id);
        engine.blit_lists().main().clear();
        return numbers;
    }
};

TEST_CASE_FIXTURE(FrameFixture,
                  "every visible running scroll gets one entry, 9 first, with these words and no others") {
    for (std::int32_t i = 0; i < 10; ++i) {
        engine.regions().define(10 + i, i, 2 * i, 20 + i, 30 + i);
        start(i, 1, 2, 10 + i);
        script(i, "z") = 1000 - i;
    }
    script(3, "z") = INT_MIN;
    engine.run_hook(host::Hook::frame);
    const std::vector<__RVKBlit2D__*> entries = engine.blit_lists().main().entries();
    REQUIRE(entries.size() == 10);
    for (std::int32_t i = 0; i < 10; ++i) {
        const __RVKBlit2D__& e = *entries[static_cast<std::size_t>(9 - i)];
        CAPTURE(i);
        CHECK(e.id == i);
        CHECK(e.owner == nullptr);
        CHECK(e.drawn == 0);
        CHECK(Rect{e.x, e.x2, e.y, e.y2} == Rect{i, 20 + i, 2 * i, 30 + i});
        CHECK(e.z == (i == 3 ? INT_MIN : 1000 - i));
        CHECK(e.has_clip == 0);
        CHECK((e.draw == services().BlitScroll2D));
        std::uint32_t words[sizeof e / 4];
        std::memcpy(words, &e, sizeof e);
        const std::set<std::size_t> written{0, 1, 2, 3, 4, 5, 6, 14, 36, 44};
        for (std::size_t w = 0; w < std::size(words); ++w)
            CHECK((written.count(w) == 1 || words[w] == host::pattern_word(w)));
    }
    engine.blit_lists().main().clear();
}

TEST_CASE_FIXTURE(FrameFixture,
                  "hidden, idle and destination-less scrolls, suspended frames and lost lists are left out") {
    map(7, 40, 30);
    for (const std::int32_t i : {0, 4, 9}) start(i, 1);
    CHECK(schedule() == "940");
    for (const std::int32_t hidden : {0, -1, INT_MIN}) {
        script(4, "visible") = hidden;
        CHECK(schedule() == "90");
    }
    for (const std::int32_t shown : {1, 2, INT_MAX}) {
        script(4, "visible") = shown;
        CHECK(schedule() == "940");
    }
    CHECK(call("scroll_set_destination", {9, kFile, 7, -1}) == 1);
    CHECK(schedule() == "940");
    engine.files().unload_map(kFile, 7);
    CHECK(schedule() == "40");
    map(7, 40, 30).entry().bitmap = nullptr;
    CHECK(schedule() == "40");
    map(7, 40, 30);
    CHECK(schedule() == "940");
    engine.set_suspended(true);
    CHECK(schedule().empty());
    engine.set_suspended(false);
    {
        int made = 0;
        Replaced<&Graphics2DInterface::SelectBlitList> select(graphics(), [](void*) { return 0; });
        Replaced<&Graphics2DInterface::NewBlit> new_blit(graphics(), [&] {
            ++made;
            return new_blit.original();
        });
        CHECK(schedule().empty());
        CHECK(made == 0);
    }
    CHECK(schedule() == "940");
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(FrameFixture, "a hidden scroll stands still in frames but moves when a script says so") {
    ProcessLocals& hero = engine.processes().create(host::kScreenCoordinates);
    start(0, 1, 0, 1);
    script(0, "camera") = host::Processes::id_of(hero);
    hero.x = 40;
    hero.y = 40;
    script(0, "visible") = 0;
    engine.frame();
    CHECK(plane(1) == Position{10, 10});
    CHECK(call("scroll_move", {0}) == 1);
    CHECK(plane(1) == Position{24, 28});
    hero.x = 45;
    script(0, "visible") = 1;
    engine.frame();
    CHECK(plane(1) == Position{29, 28});
    CHECK(shows(kView, at(1), {29, 28}));
}

TEST_CASE_FIXTURE(FrameFixture,
                  "without a map or a view nothing is drawn, no sprite either, and nothing is reported") {
    start(0, 1, 2, 1, 0, 1);
    engine.processes().create(host::kScrollCoordinates);
    engine.screen().fill(99);
    const std::function<void()> spoil[] = {
        [&] { engine.files().unload_map(kFile, 1); },
        [&] { engine.files().unload_map(kFile, 2); },
        [&] { engine.files().find_map(kFile, 1)->entry().bitmap = nullptr; },
        [&] { engine.files().find_map(kFile, 2)->entry().bitmap = nullptr; },
        [&] { region(8, 7, 4, 27); },
        [&] { region(8, 39, 4, 3); },
        [&] { region(20, 10, 4, 27); },
        [&] { region(INT_MAX, INT_MIN, INT_MAX, INT_MIN); },
        [&] { region(64, 80, 4, 27); },
        [&] { region(8, 39, 48, 90); },
        [&] { region(-20, -1, 0, 9); },
    };
    for (const auto& spoiled : spoil) {
        map(1, 150, 120);
        map(2, 150, 120);
        region(8, 39, 4, 27);
        CHECK(draw());
        engine.screen().fill(99);
        spoiled();
        int selected = 0;
        Replaced<&Graphics2DInterface::SelectBlitList> select(graphics(), [&](void* list) {
            selected += list != nullptr ? 1 : 0;
            return select.original(list);
        });
        CHECK_FALSE(draw());
        CHECK(selected == 0);
        CHECK(Fixture::shows(engine.screen(), {0, -1, 0, -1}, engine.screen(), {0, 0}, 99));
    }
    services().StopScroll(0);
    CHECK_FALSE(draw());
    CHECK(errors().empty());
}

TEST_CASE_FIXTURE(FrameFixture,
                  "each draw takes the view from the region as it is, and refills only for another size") {
    struct Row {
        Rect region, view;
        bool refilled;
    };
    const Row rows[] = {
        {{8, 39, 4, 27}, kView, false},
        {{9, 40, 5, 28}, {9, 40, 5, 28}, false},  // moved, same size
        {{9, 41, 5, 28}, {9, 41, 5, 28}, true},
        {{9, 41, 5, 28}, {9, 41, 5, 28}, false},
        {{-10, 99, -20, 49}, {0, 63, 0, 47}, true},
        {{-10, 99, -20, 49}, {0, 63, 0, 47}, true},  // cut by the destination: at every draw
        {{-10, 31, -20, 23}, {0, 31, 0, 23}, true},
        {{0, 31, 0, 23}, {0, 31, 0, 23}, false},
        {{40, 71, 30, 53}, {40, 63, 30, 47}, true},  // same size, but past the edge
        {{63, 63, 47, 47}, {63, 63, 47, 47}, true},
    };
    start(0, 1, 2, 1);
    for (const Row& row : rows) {
        CAPTURE(row.region);
        region(row.region.x, row.region.x2, row.region.y, row.region.y2);
        const Position before = plane(1);
        aim_script(1, {before.x + 1, before.y});
        engine.screen().fill(99);
        CHECK(draw());
        // A refill mirrors the positions on record over the script's wish.
        const Position now{before.x + (row.refilled ? 0 : 1), before.y};
        CHECK(plane(1) == now);
        CHECK(Fixture::shows(engine.screen(), row.view, at(1), now, 99));
        CHECK(scheduled(0) == row.view);
    }
    // An empty view is on record at once, and the services show it.
    region(30, 20, 30, 20);
    CHECK_FALSE(draw());
    CHECK(scheduled(0) == Rect{30, 20, 30, 20});
    __RVKPoint2D__ offset{};
    CHECK(services().GetScrollPoint(0, 0, &offset) == 1);
    CHECK(offset.x == 30 - plane(1).x);
    region(8, 39, 4, 27);
    CHECK(draw());
    CHECK(shows(kView, at(1), plane(1)));
}

// Where the front plane is F, 0 or 0 and the back plane B, B or 0, with a sprite of one pixel row lying below
// it all (deeper than the scroll).
TEST_CASE("planes and mode decide what is drawn where, and whether sprites can lie behind the front plane") {
    constexpr std::uint32_t F = 11, B = 22, D = 33, S = 44;
    struct Row {
        std::int32_t planes, mode;
        std::uint32_t plain[3];   // above the sprite: front, back alone, neither
        std::uint32_t sprite[3];  // the same where the sprite is
    };
    const Row rows[] = {
        {1, 0, {F, 0, 0}, {S, S, S}}, {1, 2, {F, D, D}, {S, S, S}}, {1, 1, {F, D, D}, {F, S, S}},
        {1, 3, {F, D, D}, {F, S, S}}, {2, 0, {F, B, 0}, {S, S, S}}, {2, 2, {F, B, D}, {S, S, S}},
        {2, 1, {F, B, 0}, {F, S, S}}, {2, 3, {F, B, D}, {F, S, S}},
    };
    for (const std::int32_t bits : {8, 16, 32}) {
        Fixture f(bits);
        host::Map& front = f.map(1, kWidth, kHeight);
        host::Map& back = f.map(2, kWidth, kHeight);
        host::Map& sprite = f.map(3, kWidth, 1);
        front.fill(0);
        back.fill(0);
        sprite.fill(S);
        for (const std::int32_t y : {0, 1}) {
            front.set_pixel(0, y, F);
            back.set_pixel(0, y, B);
            back.set_pixel(1, y, B);
        }
        for (const Row& row : rows) {
            CAPTURE(bits);
            CAPTURE(row.planes);
            CAPTURE(row.mode);
            f.start(0, 1, row.planes == 2 ? 2 : 0, -1, 0, row.mode);
            ProcessLocals& p = f.engine.processes().create(host::kScrollCoordinates);
            p.file = kFile;
            p.graph = 3;
            p.x = kWidth / 2;
            p.y = 1;
            p.z = 600;
            f.engine.screen().fill(D);
            CHECK(f.draw());
            for (std::int32_t x = 0; x < 3; ++x) {
                CHECK(f.engine.screen().pixel(x, 0) == row.plain[x]);
                CHECK(f.engine.screen().pixel(x, 1) == row.sprite[x]);
            }
            // With an alpha of 0 the front plane goes, at the depths that know alpha; the back plane stays.
            f.script(0, "alpha") = 0;
            f.engine.screen().fill(D);
            CHECK(f.draw());
            const std::uint32_t behind = row.planes == 2 ? B : D;
            CHECK(f.engine.screen().pixel(0, 0) == (bits == 8 ? F : behind));
            f.script(0, "alpha") = 255;
        }
    }
}

TEST_CASE("maps and their alpha flags are looked up at every draw") {
    Fixture f(32);
    f.map(1, 150, 120);
    f.start(0, 1, 0, -1, 0, 2);
    CHECK(f.draw());
    const host::Map& first = *f.engine.files().find_map(kFile, 1);
    CHECK(f.shows(kWholeScreen, first, {0, 0}));
    // Another map under the same number: what comes into view is its own, what stayed is not refilled.
    host::Bitmap old(150, 120, 32, host::Fence::none);
    Fixture::paint(old, 1);
    host::Map& second = f.map(1, 150, 120);
    Fixture::paint(second, 50);
    f.aim_script(1, {5, 0});
    CHECK(f.draw());
    CHECK(f.shows({0, kWidth - 6, 0, kHeight - 1}, old, {5, 0}));
    CHECK(f.shows({kWidth - 5, kWidth - 1, 0, kHeight - 1}, second, {kWidth, 0}));
    // Its flag counts at once: byte 3 is the opacity then.
    second.fill(0x00123456);
    CHECK(f.call("scroll_refresh", {0}) == 1);
    for (const bool alpha : {false, true, false}) {
        second.set_alpha_flag(alpha);
        f.engine.screen().fill(77);
        CHECK(f.draw());
        CHECK(f.engine.screen().pixel(3, 3) == (alpha ? 77 : 0x00123456));
    }
}

TEST_CASE("the depth is 16, 32 or else 8 bits, and an update changes every routine") {
    Fixture f(24);
    for (const std::int32_t bits : {24, 32, 8, 16, 15, 32}) {
        CAPTURE(bits);
        host::ModeChange reset;
        reset.reset = true;
        f.engine.change_video_mode({.width = kWidth, .height = kHeight, .bits_per_pixel = bits}, reset);
        for (const std::int32_t graph : {1, 2}) f.map(graph, 150, 120, {{40, 40}});
        for (const std::int32_t mode : {0, 1, 2, 3}) {
            f.start(0, 1, 2, -1, 0, mode);
            for (const Position by : {Position{3, 0}, {-5, 0}, {0, 4}, {0, -6}, {7, -2}, {40, 1}}) {
                f.move({f.plane(1).x + by.x, f.plane(1).y + by.y});
                CHECK(f.draw());
                CHECK(f.shows(kWholeScreen, *f.engine.files().find_map(kFile, 1), f.plane(1)));
            }
        }
    }
}

}  // namespace
