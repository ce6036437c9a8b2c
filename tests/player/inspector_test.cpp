// The inspector: what it works out, against what the module then does; that looking changes nothing; and what
// a picture of it shows.
#include "player/inspector/inspector.h"

#include <doctest/doctest.h>
#include <imgui.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>

#include "module/contract/numbers.h"
#include "player/inspector/words.h"

using namespace player;

namespace {

std::mt19937 random_numbers(5);
int up_to(int most) {
    return 1 + static_cast<int>(random_numbers() % static_cast<unsigned>(most));
}

// An engine with the module, maps, a camera and four regions.
struct Stage {
    host::Engine engine{{.width = 96, .height = 64, .bits_per_pixel = 32}};
    ProcessLocals* camera;

    explicit Stage(unsigned seed) {
        random_numbers.seed(seed);
        engine.load(SCROLL2D_MODULE);
        for (const int graph : {10, 11, 30})
            paint(engine.files().create_map(1, graph, up_to(300), up_to(200)));
        paint(engine.files().create_map(1, 20, 7, 5));
        camera = &engine.processes().create(host::scroll_coordinates);
        camera->file = 1;
        camera->graph = 20;
        engine.regions().define(1, 30, 20, 50, 40);
        engine.regions().define(2, 10, 5, 80, 55);
        engine.regions().define(3, 12, 8, 12 + up_to(70), 8 + up_to(40));
        engine.regions().define(4, 40, 30, 60, 50);
    }
    static void paint(host::Map& map) {
        for (std::byte& byte : map.bytes()) byte = static_cast<std::byte>(random_numbers());
    }
    std::int32_t& field(const char* name, int scroll = 0) { return engine.global("scroll", scroll, name); }
    void start(int flags, int region, int mode = 0) {
        engine.call("scroll_start", {0, 1, 10, up_to(2) == 1 ? 11 : 0, region, flags, mode});
    }
    void follow(int scroll = 0) { field("camera", scroll) = host::Processes::id_of(*camera); }
    ProcessLocals& sprite(int z, int x, int graph = 20) {
        ProcessLocals& sprite = engine.processes().create(host::scroll_coordinates);
        sprite.file = 1;
        sprite.graph = graph;
        sprite.z = z;
        sprite.x = x;
        sprite.y = 10;
        return sprite;
    }
};

Rect rect_of(const __RVKRegion__& r) {
    return {r.x, r.y, r.x2 - r.x + 1, r.y2 - r.y + 1};
}

// The least rectangle around all pixels of a bitmap that differ from `ground`.
Rect changed(const host::Bitmap& bitmap, std::uint32_t ground) {
    std::int64_t left = INT32_MAX, top = INT32_MAX, right = 0, bottom = 0;
    for (int y = 0; y < bitmap.height(); ++y)
        for (int x = 0; x < bitmap.width(); ++x) {
            if (bitmap.pixel(x, y) == ground) continue;
            left = std::min<std::int64_t>(left, x), right = std::max<std::int64_t>(right, x + 1);
            top = std::min<std::int64_t>(top, y), bottom = std::max<std::int64_t>(bottom, y + 1);
        }
    return {left, top, right - left, bottom - top};
}

}  // namespace

TEST_CASE("the parts of a map that a view shows are the map pixels under its pixels") {
    for (int i = 0; i < 1000; ++i) {
        PlaneSurvey plane;
        plane.has_map = true;
        plane.map_width = up_to(12);
        plane.map_height = up_to(12);
        plane.position = {up_to(80) - 40, up_to(80) - 40};
        const int width = up_to(14), height = up_to(14);
        std::set<std::pair<std::int64_t, std::int64_t>> expected, got;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                expected.emplace(scroll2d::floor_mod(plane.position.x + x, plane.map_width),
                                 scroll2d::floor_mod(plane.position.y + y, plane.map_height));
        const auto parts = shown_parts(plane, width, height);
        REQUIRE(parts.size() <= 4);
        for (const Rect& part : parts)
            for (std::int64_t y = part.y; y < part.bottom(); ++y)
                for (std::int64_t x = part.x; x < part.right(); ++x) REQUIRE(got.emplace(x, y).second);
        REQUIRE(got == expected);
    }
    CHECK(shown_parts({}, 5, 5).empty());
}

TEST_CASE("distances count the steps that a point may take before it leaves") {
    const Rect rect{10, 20, 5, 4};
    CHECK(distances({12, 20}, rect) == Distances{2, 2, 0, 3});
    CHECK(distances({9, 24}, rect) == Distances{-1, 5, 4, -1});
}

TEST_CASE("a side at which the scroll is said to stop is one that the module does not go beyond") {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        Stage stage(seed);
        CAPTURE(seed);
        Surveyor surveyor(stage.engine);
        stage.start(static_cast<int>(random_numbers() % 16), random_numbers() % 2 ? 3 : -1);
        for (int step = 0; step < 8; ++step) {
            stage.field("x0") = up_to(400) - 60;
            stage.field("y0") = up_to(300) - 60;
            stage.engine.frame();  // a long way of the front plane undoes what is written to the back one
            stage.field("x1") = up_to(400) - 60;
            stage.field("y1") = up_to(300) - 60;
            stage.engine.frame();
            const Survey survey = surveyor.survey();
            REQUIRE(survey.scrolls.size() == 1);
            const ScrollSurvey& scroll = survey.scrolls.front();
            REQUIRE(scroll.planes.front().position == Point{stage.field("x0"), stage.field("y0")});
            const char* const axes[][2] = {{"x0", "y0"}, {"x1", "y1"}};
            for (std::size_t plane = 0; plane < scroll.planes.size(); ++plane) {
                const Sides stopped =
                    stopped_sides(scroll.planes[plane], scroll.view.width, scroll.view.height);
                const auto [x, y] = axes[plane];
                for (const auto& [side, name, by] : {std::tuple(left_side, x, -1),
                                                     {right_side, x, 1},
                                                     {top_side, y, -1},
                                                     {bottom_side, y, 1}}) {
                    const std::int32_t before = stage.field(name);
                    stage.field(name) += by;
                    stage.engine.call("scroll_move", {0});
                    CAPTURE(name);
                    CAPTURE(by);
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
        stage.engine.regions().define(2, 10, 5, up_to(2) * 80, up_to(2) * 55);
        stage.start(15, by_region ? 3 : -1);
        stage.engine.call("scroll_set_destination", {0, on_map ? 1 : 0, on_map ? 40 : 0, by_region ? 3 : -1});
        stage.follow();
        stage.field("region1") = 1;
        stage.field("region2") = 2;
        stage.field("speed") = 3;
        stage.camera->resolution = 10;
        for (int step = 0; step < 6; ++step) {
            stage.camera->x += 10 * up_to(30);
            stage.camera->y -= 10 * up_to(9);
            if (by_region) stage.engine.regions().define(3, 5 + step, 5, 5 + step + up_to(60), 50);
            destination.fill(ground);
            stage.engine.frame();
            const Survey survey = surveyor.survey();
            const ScrollSurvey& scroll = survey.scrolls.at(0);
            REQUIRE(scroll.view == changed(destination, ground));
            REQUIRE(scroll.drawn);
            REQUIRE(scroll.on_screen == !on_map);
            REQUIRE(survey.order == std::vector<int>{0});
            const CameraSurvey& camera = scroll.camera.value();
            REQUIRE(camera.world == Point{stage.camera->x / 10, stage.camera->y / 10});
            REQUIRE(camera.on_destination == Point{scroll.view.x + camera.world.x - stage.field("x0"),
                                                   scroll.view.y + camera.world.y - stage.field("y0")});
            const Rect all{0, 0, destination.width(), destination.height()};
            const Rect& outer = scroll.region2.value().rect;
            REQUIRE(outer == common(rect_of(stage.engine.regions().at(2)), all));
            const Distances far = distances(camera.on_destination, outer);
            REQUIRE(std::min({far.left, far.right, far.top, far.bottom}) >= 0);  // what that region promises
            REQUIRE(scroll.region1.value().rect == Rect{30, 20, 21, 21});
            // The camera has a picture: it is the one sprite, at the camera's place.
            REQUIRE(scroll.sprites.size() == 1);
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
            const SpriteSurvey& sprite = scroll.sprites[i];
            REQUIRE((i == 0 || scroll.sprites[i - 1].z >= sprite.z));
            const bool seen = stage.engine.screen().pixel(static_cast<int>(sprite.position.x),
                                                          static_cast<int>(sprite.position.y)) == middle;
            REQUIRE(seen == (i >= scroll.plane_place.value()));
        }
    }
    ScrollSurvey scroll;
    scroll.z = 512;
    for (const int z : {600, 512, 512, 100}) scroll.sprites.emplace_back().z = z;
    CHECK(order_of_sprites(scroll) == "sprites by z, deepest first: 600, 512 (2), 100");
    for (const auto& [place, text] : {std::pair(1U, "600, 512 = front plane, 512 (2), 100"),
                                      {2U, "600, 512, 512 = front plane, 512, 100"},
                                      {4U, "600, 512 (2), 100, 512 = front plane"}}) {
        scroll.plane_place = place;
        CHECK(order_of_sprites(scroll) == std::string("sprites by z, deepest first: ") + text);
    }
}

TEST_CASE("a sprite's own region, and those that lack their picture") {
    Stage stage(4);
    Surveyor surveyor(stage.engine);
    stage.start(0, -1);
    stage.camera->region = 4;
    stage.engine.frame();
    const ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
    const Rect on_screen{40 - stage.field("x0"), 30 - stage.field("y0"), 21, 21};
    CHECK(scroll.sprites.at(0).clip.value() == common(on_screen, scroll.view));
    CHECK_FALSE(scroll.plane_place);
    for (const int mask : {0, 1, 2}) stage.sprite(0, 0, 99).scroll_mask = mask;
    CHECK(surveyor.survey().scrolls.at(0).missing == MissingMaps{{{1, 99}, 2}});
}

TEST_CASE("whatever is taken away between frames, the inspector still looks, and draws") {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        CAPTURE(seed);
        Stage stage(seed);
        InspectedPictures pictures(stage.engine, 1);
        stage.start(static_cast<int>(random_numbers() % 16), static_cast<int>(random_numbers() % 4));
        stage.engine.call("scroll_start", {5, 1, 11, 10, -1, 0, 3});
        stage.follow();
        const std::int32_t camera = stage.field("camera");
        const auto any = [] { return static_cast<std::int32_t>(random_numbers()); };
        const std::function<void()> changes[] = {
            [&] { stage.engine.files().unload_map(1, 9 + up_to(2)); },
            [&] { stage.engine.files().unload_file(1); },
            [&] { stage.engine.call("scroll_stop", {up_to(2) - 2}); },
            [&] { stage.engine.regions().undefine(1); },
            [&] { stage.engine.regions().define(1, INT32_MAX, INT32_MIN, INT32_MIN, INT32_MAX); },
            [&] {
                if (stage.engine.processes().exists(camera)) stage.engine.processes().destroy(camera);
            },
            [&] {
                stage.engine.change_video_mode({up_to(200), up_to(100), 4 << up_to(3)});
            },
            [&] { stage.field("region1") = any(); },
            [&] { stage.field("region2") = up_to(70000); },
            [&] { stage.field("camera") = any(); },
            [&] {
                stage.engine.call("scroll_set_destination", {-1, 1, 30, -1});
            },
            [&] { stage.field("x0") = stage.field("y1") = any(); }};
        for (int step = 0; step < 12; ++step) {
            if (up_to(3) > 1) stage.engine.frame();
            changes[random_numbers() % std::size(changes)]();
            const Picture screen(stage.engine.screenshot());
            REQUIRE(pictures.take(screen).width > screen.width);
        }
    }
}

TEST_CASE("a map that is gone, an ended camera and a stopped scroll are told as such") {
    Stage stage(2);
    Surveyor surveyor(stage.engine);
    stage.engine.call("scroll_start", {0, 1, 10, 11, -1, 0});
    stage.engine.frame();
    CHECK(surveyor.survey().scrolls.at(0).planes.size() == 2);
    stage.field("camera") = 12345;
    stage.engine.files().unload_map(1, 10);
    ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
    CHECK_FALSE(scroll.planes[0].has_map);
    CHECK(scroll.planes[1].has_map);
    stage.engine.frame();
    CHECK_FALSE(surveyor.survey().scrolls.at(0).drawn);
    CHECK_FALSE(scroll.camera.value().alive);
    stage.field("visible") = 0;
    stage.engine.frame();
    scroll = surveyor.survey().scrolls.at(0);
    CHECK_FALSE(scroll.visible);
    CHECK_FALSE(scroll.drawn);
    stage.field("graph1") = 30;
    CHECK(surveyor.survey().scrolls.at(0).planes[0].graph == 10);
    stage.engine.call("scroll_refresh", {-1});
    CHECK(surveyor.survey().scrolls.at(0).planes[0].graph == 30);
    stage.engine.call("scroll_set_destination", {0, 1, 20, -1});
    scroll = surveyor.survey().scrolls.at(0);
    CHECK_FALSE(scroll.on_screen);
    CHECK(scroll.destination_graph == 20);
    stage.engine.call("scroll_stop", {0});
    CHECK(surveyor.survey().scrolls.empty());
}

TEST_CASE("looking changes nothing that is drawn") {
    std::vector<std::vector<Rgba>> frames[2];
    for (const bool looked_at : {false, true}) {
        Stage stage(9);
        std::optional<Surveyor> surveyor;
        if (looked_at) surveyor.emplace(stage.engine, [] { return 0.0; });
        stage.start(5, 3, 3);
        stage.follow();
        for (int i = 0; i < 30; ++i) {
            stage.camera->x += 3;
            stage.engine.frame();
            if (looked_at) (void)surveyor->survey();
            frames[looked_at].push_back(stage.engine.screenshot().pixels);
        }
        CHECK(stage.engine.faults().empty());
        CHECK(stage.engine.untouched().empty());
    }
    CHECK(frames[0] == frames[1]);
}

TEST_CASE("the panels leave the game its room, and the legend has its words at every size") {
    for (int i = 0; i < 2000; ++i) {
        const int width = 15 + up_to(800), height = 15 + up_to(600), scale = up_to(4), steps = up_to(3);
        const Area size = inspected_size(width, height, scale, steps);
        const Area game = lay_out_inspector(size, steps).game;
        // In a picture smaller than the panels themselves those take their share.
        if (width * scale >= 400 * steps && height * scale >= 640 * steps) {
            const Placement placed = place_screen(width, height, game);
            REQUIRE(placed.scale == scale);
            REQUIRE(placed.at.width == game.width);
            REQUIRE(placed.at.height == game.height);
        }
        const Area window{0, 0, least_window_width - 1 + up_to(1500), least_window_height - 1 + up_to(900)};
        const InspectorLayout layout = lay_out_inspector(window, 1);
        REQUIRE(layout.game.width >= window.width / 2);
        REQUIRE(layout.game.height >= window.height / 2);
        REQUIRE(layout.game.height + layout.maps.height + layout.legend.height == window.height);
        Area last{0, 0, 0, 0};
        for (const Area& word : legend_places(layout.legend.width, 1)) {
            REQUIRE((word.y > last.y ? word.y >= last.y + last.height : word.x > last.x + last.width));
            REQUIRE(word.x + word.width <= layout.legend.width);
            REQUIRE(word.y + word.height <= layout.legend.height);
            last = word;
        }
    }
}

TEST_CASE("panels grow by whole steps on large displays, where they have the room") {
    const Area usual{0, 0, 1920, 1080}, large{0, 0, 3840, 2160}, small{0, 0, 700, 500};
    CHECK(panel_steps(usual, usual) == 1);
    CHECK(panel_steps(large, large) == 2);
    CHECK(panel_steps(large, small) == 1);
    CHECK(panel_steps(small, small) == 1);
    Canvas canvas(64, 64);
    for (const int steps : {1, 2, 3, 1}) {
        canvas.begin(steps);
        CHECK(px(10) == 10 * steps);
        CHECK(text_width("iW-9") == 4 * letter_width * steps);
        canvas.finish();
    }
}

TEST_CASE("tags lie apart, and figures beside the distance that they tell") {
    for (int i = 0; i < 300; ++i) {
        const auto area = [] { return Area{up_to(300) - 50, up_to(200) - 50, up_to(60), 15}; };
        const Area room{0, 0, up_to(250), up_to(150)}, covered = area();
        std::vector<Area> wanted, taken{covered};
        for (int k = 0; k < 10; ++k) wanted.push_back(area());
        for (const std::optional<Area>& tag : place_tags(wanted, room, covered)) {
            if (!tag) continue;
            REQUIRE(std::min(tag->x, tag->y) >= 0);
            REQUIRE(tag->x + tag->width <= room.width);
            REQUIRE(tag->y + tag->height <= room.height);
            for (const Area& other : taken)
                REQUIRE((tag->x >= other.x + other.width || other.x >= tag->x + tag->width ||
                         tag->y >= other.y + other.height || other.y >= tag->y + tag->height));
            taken.push_back(*tag);
        }
        ScrollSurvey scroll;
        scroll.view = {up_to(50), up_to(40), 20 + up_to(40), 20 + up_to(40)};
        const Point camera{scroll.view.x + up_to(19), scroll.view.y + up_to(19)};
        scroll.camera = CameraSurvey{true, {}, camera};
        const auto lines = measures(scroll, Projection({0, 0, 300, 300}, 100, 100));
        REQUIRE(lines.size() == 4);
        for (const auto& [line, distance] : lines) REQUIRE(line.width + line.height == 3 * distance + 1);
        REQUIRE(lines[0].line.x == 3 * scroll.view.x);
        REQUIRE(lines[1].line.x == 3 * camera.x + 3);
        REQUIRE(lines[2].line.y == 3 * scroll.view.y);
        REQUIRE(lines[3].line.y == 3 * camera.y + 3);
    }
}

// Whether a colour is within an area of a picture, at least once.
bool has(const Picture& picture, const Area& area, Rgba colour) {
    for (int y = area.y; y < area.y + area.height; ++y)
        for (int x = area.x; x < area.x + area.width; ++x)
            if (picture.at(x, y) == colour) return true;
    return false;
}

TEST_CASE(
    "marks lie exactly on the game's pixels, each map has its picture, and pictures repeat to the byte") {
    constexpr Rgba colours[] = {
        {10, 200, 20, 255}, {20, 30, 220, 255}, {210, 40, 200, 255}, {30, 190, 190, 255}};
    Picture pictures[2];
    for (Picture& picture : pictures) {
        Stage stage(12);
        InspectedPictures inspected(stage.engine, 6);
        stage.engine.regions().define(3, 20, 10, 59, 49);
        stage.engine.set_backdrop(0U);
        for (int i = 0; i < 4; ++i)
            stage.engine.files()
                .create_map(1, 50 + i, 200, 100)
                .fill(host::to_pixel(colours[i], 32, stage.engine.palette(), false));
        stage.engine.call("scroll_start", {0, 1, 50, 51, 3, 12});  // stands at the left and at the top
        stage.engine.call("scroll_start", {7, 1, 52, 53, 3, 15});
        for (int i = 0; i < 3; ++i) {
            stage.engine.frame();
            picture = inspected.take(Picture(stage.engine.screenshot()));
        }
        const InspectorLayout layout = lay_out_inspector({0, 0, picture.width, picture.height}, 1);
        const Area at = place_screen(96, 64, layout.game).at;
        REQUIRE(at.width == 6 * 96);
        const auto marked = [&](Mark mark, int x, int y) {
            return picture.at(at.x + x, at.y + y) == colour_of(mark);
        };
        // The far edges, where no name tag lies: the outermost pixel is marked, the next one outside is not.
        CHECK(marked(Mark::view, 6 * 60 - 1, 6 * 45));
        CHECK_FALSE(marked(Mark::view, 6 * 60, 6 * 45));
        CHECK(marked(Mark::view, 6 * 50, 6 * 50 - 1));
        CHECK_FALSE(marked(Mark::view, 6 * 50, 6 * 50));
        CHECK_FALSE(marked(Mark::map_edge, 6 * 20 - 1, 6 * 45));
        CHECK(marked(Mark::map_edge, 6 * 20 + 4, 6 * 45));
        CHECK(marked(Mark::map_edge, 6 * 50, 6 * 10 + 4));
        CHECK_FALSE(marked(Mark::map_edge, 6 * 60 - 5, 6 * 45));
        CHECK_FALSE(marked(Mark::map_edge, 6 * 50, 6 * 50 - 5));
        // Front and back beside each other, scroll under scroll.
        const int width = layout.maps.width / 2, height = layout.maps.height / 2;
        for (int cell = 0; cell < 4; ++cell)
            for (int i = 0; i < 4; ++i)
                CHECK(has(picture, {cell % 2 * width, layout.maps.y + cell / 2 * height, width, height},
                          colours[i]) == (cell == i));
        // Around the first map the left and the top side are red, where the view stands; the others are not.
        int left = width, top = picture.height, right = 0, bottom = 0;
        for (int y = layout.maps.y; y < layout.maps.y + height; ++y)
            for (int x = 0; x < width; ++x)
                if (picture.at(x, y) == colours[0]) {
                    left = std::min(left, x), right = std::max(right, x);
                    top = std::min(top, y), bottom = std::max(bottom, y);
                }
        const auto red = [&](int x, int y) { return picture.at(x, y) == colour_of(Mark::map_edge); };
        CHECK(red(left - 1, bottom));
        CHECK(red(right, top - 1));
        CHECK_FALSE(red(right + 1, bottom));
        CHECK_FALSE(red(right, bottom + 1));
    }
    const bool same = pictures[0].pixels == pictures[1].pixels;
    CHECK(same);
}

TEST_CASE("a canvas shows each picture as it is, also after one of another size") {
    Canvas canvas(60, 60);
    for (const auto& [width, height] : {std::pair(7, 5), {20, 13}, {13, 20}, {7, 5}}) {
        Picture picture(width, height);
        for (Rgba& pixel : picture.pixels) pixel = {static_cast<std::uint8_t>(up_to(255)), 7, 9, 255};
        canvas.begin();
        canvas.lay(picture, {3, 1, 2 * width, 2 * height});
        canvas.finish();
        const bool same =
            cut_out(canvas.picture(), 3, 1, 2 * width, 2 * height).pixels == enlarged(picture, 2).pixels;
        CHECK(same);
    }
}

TEST_CASE("a typed number takes effect at Enter, and a camera that was let go of can be had back") {
    Stage stage(3);
    Inspector inspector(stage.engine);
    Canvas canvas(1100, 700);
    ImGuiIO& io = ImGui::GetIO();
    const auto show = [&] {
        inspector.look();
        canvas.begin();
        inspector.draw(canvas, Picture(stage.engine.screenshot()));
        canvas.finish();
    };
    const auto press = [&](bool& key) {
        for (const bool down : {false, true, false}) {
            key = down;
            show();
        }
    };
    constexpr int enter = 1, escape = 2;
    io.KeyMap[ImGuiKey_Enter] = enter;
    io.KeyMap[ImGuiKey_Escape] = escape;
    stage.start(15, -1);
    stage.follow();
    stage.engine.frame();
    show();
    const Area side = lay_out_inspector(canvas.size(), 1).side;
    const auto begin_typing = [&] {
        for (int i = 0; i < 30; ++i) show();  // two clicks in a row would be something else
        io.KeyCtrl = true;
        press(io.MouseDown[0]);
        io.KeyCtrl = false;
    };
    const auto type = [&](bool& last_key) {
        for (const char digit : {'7', '5'}) {
            io.AddInputCharacter(static_cast<unsigned>(digit));
            show();
            CHECK(stage.field("ratio") == 200);
        }
        press(last_key);
    };
    // Down the second column of fields to the first one that can be typed: ratio.
    for (int y = 66; y < 200 && !canvas.takes_keyboard(); y += 4) {
        io.MousePos = vec(side.x + 224, y);
        begin_typing();
    }
    type(io.KeysDown[escape]);
    CHECK(stage.field("ratio") == 200);
    begin_typing();
    type(io.KeysDown[enter]);
    CHECK(stage.field("ratio") == 75);
    // The button beside it.
    io.MousePos.x = static_cast<float>(side.x + 97);
    const std::int32_t camera = stage.field("camera");
    press(io.MouseDown[0]);
    CHECK(stage.field("camera") == 0);
    press(io.MouseDown[0]);
    CHECK(stage.field("camera") == camera);
}
