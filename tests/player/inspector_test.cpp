// The inspector: what it works out, against what the module then does; that looking changes nothing; and what
// a picture of it shows.
#include "player/inspector/inspector.h"

#include <doctest/doctest.h>
#include <imgui.h>

#include <algorithm>
#include <random>
#include <set>

#include "module/contract/numbers.h"
#include "player/inspector/words.h"

using namespace player;

namespace {

std::mt19937 random_numbers;
int up_to(int most) {
    return 1 + static_cast<int>(random_numbers() % static_cast<unsigned>(most));
}

// An engine with the module, maps, a camera and three regions.
struct Stage {
    host::Engine engine{{.width = 96, .height = 64, .bits_per_pixel = 32}};
    ProcessLocals* camera;

    explicit Stage(unsigned seed) {
        random_numbers.seed(seed);
        engine.load(SCROLL2D_MODULE);
        for (const int graph : {10, 11, 30}) paint(graph, up_to(300), up_to(200));
        paint(20, 7, 5);
        camera = &sprite(0, 0);
        engine.regions().define(1, 30, 20, 50, 40);
        engine.regions().define(2, 10, 5, up_to(2) * 80, up_to(2) * 55);
        engine.regions().define(3, 12, 8, 12 + up_to(70), 8 + up_to(40));
    }
    void paint(int graph, int width, int height) {
        for (std::byte& byte : engine.files().create_map(1, graph, width, height).bytes())
            byte = static_cast<std::byte>(random_numbers());
    }
    std::int32_t& field(const char* name) { return engine.global("scroll", 0, name); }
    void start(int flags, int region, int mode = 0) {
        engine.call("scroll_start", {0, 1, 10, up_to(2) == 1 ? 11 : 0, region, flags, mode});
    }
    int follow() { return field("camera") = host::Processes::id_of(*camera); }
    ProcessLocals& sprite(int z, int x, int graph = 20) {
        ProcessLocals& sprite = engine.processes().create(host::scroll_coordinates);
        sprite.file = 1, sprite.graph = graph;
        sprite.x = x, sprite.y = 10, sprite.z = z;
        return sprite;
    }
};

Rect rect_of(const Area& area) {
    return {area.x, area.y, area.width, area.height};
}

// The least rectangle around the pixels for which `counts(x, y)`.
template <class Counts>
Rect around(const Area& area, Counts&& counts) {
    std::int64_t left = INT32_MAX, top = INT32_MAX, right = 0, bottom = 0;
    for (int y = area.y; y < area.y + area.height; ++y)
        for (int x = area.x; x < area.x + area.width; ++x)
            if (counts(x, y)) {
                left = std::min<std::int64_t>(left, x), right = std::max<std::int64_t>(right, x + 1);
                top = std::min<std::int64_t>(top, y), bottom = std::max<std::int64_t>(bottom, y + 1);
            }
    return {left, top, right - left, bottom - top};
}

}  // namespace

TEST_CASE("the parts of a map that a view shows are the map pixels under its pixels") {
    for (int i = 0; i < 1000; ++i) {
        PlaneSurvey plane{1, true, up_to(12), up_to(12), {up_to(80) - 40, up_to(80) - 40}};
        const int width = up_to(14), height = up_to(14);
        std::set<std::pair<std::int64_t, std::int64_t>> expected, got;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                expected.emplace(scroll2d::floor_mod(plane.position.x + x, plane.map_width),
                                 scroll2d::floor_mod(plane.position.y + y, plane.map_height));
        for (const Rect& part : shown_parts(plane, width, height))
            for (std::int64_t y = part.y; y < part.bottom(); ++y)
                for (std::int64_t x = part.x; x < part.right(); ++x) REQUIRE(got.emplace(x, y).second);
        REQUIRE(got == expected);
    }
}

TEST_CASE("a side at which the scroll is said to stop is one that the module does not go beyond") {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        Stage stage(seed);
        CAPTURE(seed);
        Surveyor surveyor(stage.engine);
        stage.start(up_to(16) - 1, up_to(2) == 1 ? 3 : -1);
        for (int step = 0; step < 8; ++step) {
            // A long way of the front plane undoes what is written to the back one, so one after the other.
            for (const auto& [x, y] : {std::pair("x0", "y0"), {"x1", "y1"}}) {
                stage.field(x) = up_to(400) - 60;
                stage.field(y) = up_to(300) - 60;
                stage.engine.frame();
            }
            const ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
            for (std::size_t plane = 0; plane < scroll.planes.size(); ++plane) {
                const Sides stopped =
                    stopped_sides(scroll.planes[plane], scroll.view.width, scroll.view.height);
                const char *const x = plane == 0 ? "x0" : "x1", *const y = plane == 0 ? "y0" : "y1";
                REQUIRE(scroll.planes[plane].position == Point{stage.field(x), stage.field(y)});
                for (const auto& [side, name, by] : {std::tuple(left_side, x, -1),
                                                     {right_side, x, 1},
                                                     {top_side, y, -1},
                                                     {bottom_side, y, 1}}) {
                    const std::int32_t before = stage.field(name);
                    stage.field(name) += by;
                    stage.engine.call("scroll_move", {0});
                    REQUIRE((stage.field(name) == before) == ((stopped & side) != 0));
                    stage.field(name) = before;
                    stage.engine.call("scroll_move", {0});
                }
            }
        }
    }
}

TEST_CASE("view, camera and regions are those of the frame that was drawn, on the screen and on a map") {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        CAPTURE(seed);
        Stage stage(seed);
        Surveyor surveyor(stage.engine);
        constexpr std::uint32_t ground = 0x12345678;
        stage.engine.set_backdrop(ground);
        const bool by_region = seed % 2 == 0, on_map = seed % 3 == 0;
        host::Bitmap& destination =
            on_map ? stage.engine.files().create_map(1, 40, 90 + up_to(80), 50 + up_to(80))
                   : stage.engine.screen();
        stage.start(15, by_region ? 3 : -1);
        stage.engine.call("scroll_set_destination", {0, on_map ? 1 : 0, on_map ? 40 : 0, by_region ? 3 : -1});
        stage.follow();
        stage.field("region1") = 1, stage.field("region2") = 2, stage.field("speed") = 3;
        stage.camera->resolution = 10;
        for (int step = 0; step < 6; ++step) {
            stage.camera->x += 10 * up_to(30);
            stage.camera->y -= 10 * up_to(9);
            if (by_region) stage.engine.regions().define(3, 5 + step, 5, 5 + step + up_to(60), 50);
            destination.fill(ground);
            stage.engine.frame();
            const ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
            const Area all{0, 0, destination.width(), destination.height()};
            REQUIRE(scroll.view ==
                    around(all, [&](int x, int y) { return destination.pixel(x, y) != ground; }));
            REQUIRE((scroll.drawn && scroll.on_screen == !on_map && scroll.sprites.size() == 1));
            const CameraSurvey camera = scroll.camera.value();
            REQUIRE(camera.world == Point{stage.camera->x / 10, stage.camera->y / 10});
            REQUIRE(camera.on_destination == Point{scroll.view.x + camera.world.x - stage.field("x0"),
                                                   scroll.view.y + camera.world.y - stage.field("y0")});
            const __RVKRegion__& r = stage.engine.regions().at(2);
            const Rect outer = scroll.region2.value().rect;
            REQUIRE(outer == common({r.x, r.y, r.x2 - r.x + 1, r.y2 - r.y + 1}, rect_of(all)));
            const Distances far = distances(camera.on_destination, outer);
            REQUIRE(std::min({far.left, far.right, far.top, far.bottom}) >= 0);  // what that region promises
            REQUIRE(scroll.region1.value().rect == Rect{30, 20, 21, 21});
            // The camera has a picture: it is the one sprite, at the camera's place.
            REQUIRE(scroll.sprites[0].position == camera.on_destination);
            REQUIRE(scroll.sprites[0].box ==
                    Rect{camera.on_destination.x - 3, camera.on_destination.y - 2, 7, 5});
        }
    }
}

TEST_CASE("sprites come in drawing order, and before the front plane where that hides them") {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        CAPTURE(seed);
        Stage stage(seed);
        Surveyor surveyor(stage.engine);
        stage.camera->graph = 0;
        stage.start(15, -1, scroll2d::scroll_layers);
        for (int i = 0; i < 8; ++i) stage.sprite(510 + up_to(3), 10 * i + 5);
        stage.engine.frame();
        const ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
        REQUIRE(scroll.sprites.size() == 8);
        const std::uint32_t middle = stage.engine.files().find_map(1, 20)->pixel(3, 2);
        for (std::size_t i = 0; i < 8; ++i) {
            const auto [x, y] = scroll.sprites[i].position;
            REQUIRE((i == 0 || scroll.sprites[i - 1].z >= scroll.sprites[i].z));
            const bool seen = stage.engine.screen().pixel(static_cast<int>(x), static_cast<int>(y)) == middle;
            REQUIRE(seen == (i >= scroll.plane_place.value()));
        }
    }
    ScrollSurvey scroll;
    scroll.z = 512;
    for (const int z : {600, 512, 512, 100}) scroll.sprites.emplace_back().z = z;
    for (const auto& [place, text] : {std::pair(1U, "600, 512 = front plane, 512 (2), 100"),
                                      {2U, "600, 512, 512 = front plane, 512, 100"},
                                      {4U, "600, 512 (2), 100, 512 = front plane"}}) {
        scroll.plane_place = place;
        CHECK(order_of_sprites(scroll) == std::string("sprites by z, deepest first: ") + text);
    }
}

TEST_CASE("what is clipped, missing, hidden, gone or renewed is told as such, and looking changes nothing") {
    std::vector<Rgba> frames[2];
    for (const bool looked_at : {false, true}) {
        Stage stage(9);
        Surveyor surveyor(stage.engine, [] { return 0.0; });
        stage.engine.call("scroll_start", {0, 1, 10, 11, 3, 5, 3});
        stage.camera->region = 1;
        for (const int mask : {0, 1, 2}) stage.sprite(0, 0, 99).scroll_mask = mask;
        for (int i = 0; i < 20; ++i) {
            stage.camera->x += 3 * (stage.follow() != 0);
            stage.engine.frame();
            if (looked_at) (void)surveyor.survey();
            std::ranges::copy(stage.engine.screenshot().pixels, std::back_inserter(frames[looked_at]));
        }
        CHECK(stage.engine.untouched().empty());
        ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
        const Point offset{scroll.view.x - stage.field("x0"), scroll.view.y - stage.field("y0")};
        CHECK(scroll.sprites.at(0).clip.value() ==
              common({30 + offset.x, 20 + offset.y, 21, 21}, scroll.view));
        CHECK(scroll.missing == MissingMaps{{{1, 99}, 2}});
        stage.field("camera") = 12345, stage.field("visible") = 0, stage.field("graph1") = 30;
        stage.engine.files().unload_map(1, 11);
        stage.engine.frame();
        scroll = surveyor.survey().scrolls.at(0);
        CHECK_FALSE(
            (scroll.visible || scroll.drawn || scroll.camera.value().alive || scroll.planes.at(1).has_map));
        CHECK(scroll.planes[0].graph == 10);
        stage.field("graph2") = 10;
        stage.engine.call("scroll_refresh", {-1});
        CHECK(surveyor.survey().scrolls.at(0).planes[0].graph == 30);
        stage.engine.call("scroll_stop", {0});
        CHECK(surveyor.survey().scrolls.empty());
    }
    CHECK(frames[0] == frames[1]);
}

TEST_CASE(
    "panels grow with the display, leave the game its room, and the legend has its words at every size") {
    const Area usual{0, 0, 1920, 1080}, large{0, 0, 3840, 2160}, small{0, 0, 700, 500};
    CHECK(
        (panel_steps(usual, usual) == 1 && panel_steps(large, large) == 2 && panel_steps(large, small) == 1));
    Canvas canvas(64, 64);
    for (const int steps : {1, 2, 3, 1}) {
        canvas.begin(steps);
        CHECK((px(10) == 10 * steps && text_width("iW-9") == 4 * letter_width * steps));
        canvas.finish();
    }
    for (int i = 0; i < 2000; ++i) {
        const int width = 15 + up_to(800), height = 15 + up_to(600), scale = up_to(4), steps = up_to(3);
        const Area game = lay_out_inspector(inspected_size(width, height, scale, steps), steps).game;
        // In a picture smaller than the panels themselves those take their share.
        if (width * scale >= 400 * steps && height * scale >= 640 * steps)
            REQUIRE((game.width == scale * width && game.height == scale * height));
        const Area window{0, 0, least_window_width - 1 + up_to(1500), least_window_height - 1 + up_to(900)};
        const InspectorLayout layout = lay_out_inspector(window, 1);
        REQUIRE((layout.game.width >= window.width / 2 && layout.game.height >= window.height / 2));
        REQUIRE(layout.game.height + layout.maps.height + layout.legend.height == window.height);
        Area last{0, 0, 0, 0};
        for (const Area& word : legend_places(layout.legend.width, 1)) {
            REQUIRE((word.y > last.y ? word.y >= last.y + last.height : word.x > last.x + last.width));
            REQUIRE((word.x + word.width <= window.width && word.y + word.height <= layout.legend.height));
            last = word;
        }
    }
}

TEST_CASE("tags lie apart, and figures tell the distance beside them") {
    for (int i = 0; i < 300; ++i) {
        const Area room{0, 0, up_to(250), up_to(150)};
        std::vector<Area> wanted;
        for (int k = 0; k < 10; ++k) wanted.push_back({up_to(300) - 50, up_to(200) - 50, up_to(60), 15});
        std::vector<Area> taken{wanted[0]};
        for (const std::optional<Area>& tag : place_tags(wanted, room, wanted[0])) {
            if (!tag) continue;
            REQUIRE((tag->x >= 0 && tag->x + tag->width <= room.width));
            REQUIRE((tag->y >= 0 && tag->y + tag->height <= room.height));
            for (const Area& other : taken) REQUIRE(common(rect_of(*tag), rect_of(other)).empty());
            taken.push_back(*tag);
        }
        ScrollSurvey scroll;
        scroll.view = {up_to(50), up_to(40), 20 + up_to(40), 20 + up_to(40)};
        const Point at{scroll.view.x + up_to(19), scroll.view.y + up_to(19)};
        scroll.camera = CameraSurvey{true, {}, at};
        scroll.region2 = RegionSurvey{7, true, scroll.view};
        const auto lines = measures(scroll, Projection({0, 0, 300, 300}, 100, 100));
        for (const auto& [line, distance] : lines) REQUIRE(line.width + line.height == 3 * distance + 1);
        const auto far = [&](std::size_t side) { return std::to_string(lines.at(side).distance); };
        REQUIRE(words_of_camera(scroll).at(1).text ==
                "to region2: left " + far(0) + "  right " + far(1) + "  up " + far(2) + "  down " + far(3));
        REQUIRE((lines.at(0).line.x == 3 * scroll.view.x && lines.at(1).line.x == 3 * at.x + 3));
        REQUIRE((lines.at(2).line.y == 3 * scroll.view.y && lines.at(3).line.y == 3 * at.y + 3));
    }
}

TEST_CASE("marks lie exactly on the game's pixels, and each map has a picture with its own edges") {
    constexpr Rgba colours[] = {{10, 200, 20}, {20, 30, 220}, {210, 40, 200}, {30, 190, 190}};
    Stage stage(12);
    InspectedPictures inspected(stage.engine, 6);
    stage.engine.regions().define(3, 20, 10, 59, 49);
    for (int i = 0; i < 4; ++i)
        stage.engine.files().create_map(1, 50 + i, 200, 100).fill(host::to_pixel(colours[i], 32, {}, false));
    stage.engine.call("scroll_start", {0, 1, 50, 51, 3, 12});  // stands at the left and the top
    stage.engine.call("scroll_start", {7, 1, 52, 53, 3, 15});
    stage.engine.frame();
    const Picture picture = inspected.take(Picture(stage.engine.screenshot()));
    const InspectorLayout layout = lay_out_inspector({0, 0, picture.width, picture.height}, 1);
    const Area at = place_screen(96, 64, layout.game).at;
    const auto marked = [&](Mark mark, std::int64_t x, std::int64_t y) {
        return picture.at(static_cast<int>(x), static_cast<int>(y)) == colour_of(mark);
    };
    const auto red = [&](std::int64_t x, std::int64_t y) { return marked(Mark::map_edge, x, y); };
    // The far edges of the view, where no tag lies: the outermost pixel is marked, the next one is not.
    const int left = at.x + 6 * 20, top = at.y + 6 * 10, right = left + 6 * 40 - 1, bottom = top + 6 * 40 - 1;
    CHECK((marked(Mark::view, right, bottom) && !marked(Mark::view, right + 1, bottom)));
    CHECK_FALSE((marked(Mark::view, right, bottom + 1) || marked(Mark::view, left - 1, bottom)));
    CHECK((red(left + 4, bottom - 20) && red(right - 20, top + 4)));
    CHECK_FALSE((red(right - 4, bottom - 20) || red(right - 20, bottom - 4)));
    // Front and back beside each other, scroll under scroll.
    const int width = layout.maps.width / 2, height = layout.maps.height / 2;
    for (int i = 0; i < 4; ++i) {
        const Rect map = around(layout.maps, [&](int x, int y) { return picture.at(x, y) == colours[i]; });
        REQUIRE((map.width > 20 && map.x / width == i % 2 && (map.y - layout.maps.y) / height == i / 2));
        REQUIRE((map.width < width && map.height < height));
        CHECK((red(map.x - 1, map.bottom() - 1) && red(map.right() - 1, map.y - 1)) == (i == 0));
        CHECK_FALSE((red(map.right(), map.bottom() - 1) || red(map.right() - 1, map.bottom())));
    }
}

TEST_CASE("a canvas shows each picture as it is, also after one of another size") {
    Canvas canvas(60, 60);
    for (const auto& [width, height] : {std::pair(7, 5), {20, 13}, {13, 20}, {7, 5}}) {
        Picture picture(width, height);
        for (Rgba& pixel : picture.pixels) pixel = {static_cast<std::uint8_t>(up_to(255)), 7, 9, 255};
        canvas.begin();
        canvas.lay(picture, {3, 1, 2 * width, 2 * height});
        canvas.finish();
        const Picture shown = cut_out(canvas.picture(), 3, 1, 2 * width, 2 * height);
        CHECK((shown.pixels == enlarged(picture, 2).pixels));
    }
}

TEST_CASE("a typed number takes effect at Enter, and a camera that was let go of can be had back") {
    Stage stage(3);
    Inspector inspector(stage.engine);
    Canvas canvas(1100, 700);
    ImGuiIO& io = ImGui::GetIO();
    const int enter = io.KeyMap[ImGuiKey_Enter] = 1, escape = io.KeyMap[ImGuiKey_Escape] = 2;
    stage.start(15, -1);
    const std::int32_t camera = stage.follow();
    stage.engine.frame();
    const auto show = [&] {
        inspector.look();
        canvas.begin();
        inspector.draw(canvas, Picture(stage.engine.screenshot()));
        canvas.finish();
    };
    const auto press = [&](bool& key) {
        for (const bool down : {false, true, false}) key = down, show();
    };
    // Ctrl and a click, digits, and a key that ends the typing.
    const auto type = [&](bool& last_key) {
        for (int i = 0; i < 30; ++i) show();  // two clicks in a row would be something else
        io.KeyCtrl = true;
        press(io.MouseDown[0]);
        io.KeyCtrl = false;
        const std::int32_t before = stage.field("ratio");
        for (const char digit : {'7', '5'}) {
            io.AddInputCharacter(static_cast<unsigned>(digit));
            show();
            CHECK(stage.field("ratio") == before);
        }
        stage.field("ratio") = before - 1;  // the game goes on meanwhile
        press(last_key);
        return stage.field("ratio");
    };
    const Area side = lay_out_inspector(canvas.size(), 1).side;
    io.MousePos = vec(side.x + 224, 78);  // the second field, ratio
    CHECK(type(io.KeysDown[escape]) == 199);
    CHECK(type(io.KeysDown[enter]) == 75);
    io.MousePos.x = static_cast<float>(side.x + 97);  // the button beside it
    press(io.MouseDown[0]);
    CHECK(stage.field("camera") == 0);
    press(io.MouseDown[0]);
    CHECK(stage.field("camera") == camera);
}
