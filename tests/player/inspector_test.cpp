// The inspector: what it works out, against what the module then does; and that looking changes nothing.
#include "player/inspector/inspector.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <map>
#include <random>
#include <set>

#include "player/window/panels.h"

using namespace player;

namespace {

std::int64_t floor_mod(std::int64_t a, std::int64_t m) {
    return (a % m + m) % m;
}

// An engine with the module, a front and a back map, a camera and two follow regions.
struct Stage {
    host::Engine engine{{.width = 96, .height = 64, .bits_per_pixel = 32}};
    std::mt19937 random;
    ProcessLocals* camera;

    explicit Stage(unsigned seed) : random(seed) {
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
    int up_to(int most) { return 1 + static_cast<int>(random() % static_cast<unsigned>(most)); }
    void paint(host::Map& map) {
        for (std::byte& byte : map.bytes()) byte = static_cast<std::byte>(random());
    }
    std::int32_t& field(const char* name, int scroll = 0) { return engine.global("scroll", scroll, name); }
    void start(int flags, int region, int mode = 0) {
        engine.call("scroll_start", {0, 1, 10, random() % 2 ? 11 : 0, region, flags, mode});
    }
    std::vector<std::byte> screen() {
        return {engine.screen().bytes().begin(), engine.screen().bytes().end()};
    }
};

// Of one try to move a plane, for a failure to tell.
std::string describe(const char* field, int by) {
    return std::string(field) + (by < 0 ? " one less" : " one more");
}

// The words of the last picture, read from the glyphs that ImGui drew; "\1" stands for one that is cut at its
// side. Rows that are scrolled half out of sight are left out, and `covered` counts glyphs that were drawn
// over.
std::vector<std::string> words_drawn(int& covered) {
    std::map<std::array<float, 2>, char> letters;
    for (char c = '!'; c <= '~'; ++c) {
        const ImFontGlyph* glyph = ImGui::GetFont()->FindGlyph(static_cast<ImWchar>(c));
        letters[{glyph->U0, glyph->V0}] = c;
    }
    const ImVec2 white = ImGui::GetIO().Fonts->TexUvWhitePixel;
    std::vector<std::string> words;
    std::vector<ImVec4> glyphs;
    ImVec2 next{-1, -1};
    for (const ImDrawList* list :
         std::span(ImGui::GetDrawData()->CmdLists, std::size_t(ImGui::GetDrawData()->CmdListsCount)))
        for (const ImDrawCmd& command : list->CmdBuffer) {
            if (command.GetTexID() != ImGui::GetIO().Fonts->TexID) continue;
            for (unsigned i = 0; i < command.ElemCount; i += 3) {
                const auto corner = [&](unsigned j) -> const ImDrawVert& {
                    const unsigned index = list->IdxBuffer[static_cast<int>(command.IdxOffset + i + j)];
                    return list->VtxBuffer[static_cast<int>(command.VtxOffset + index)];
                };
                const ImDrawVert &a = corner(0), &b = corner(1), &c = corner(2);
                if (a.uv.x == white.x && a.uv.y == white.y) {
                    if (a.col >> IM_COL32_A_SHIFT < 100) continue;
                    const auto [left, right] = std::minmax({a.pos.x, b.pos.x, c.pos.x});
                    const auto [top, bottom] = std::minmax({a.pos.y, b.pos.y, c.pos.y});
                    for (const ImVec4& g : glyphs)
                        covered += left < g.z && right > g.x && top < g.w && bottom > g.y;
                    continue;
                }
                i += 3;  // the other half of the same glyph
                const ImVec4& clip = command.ClipRect;
                if (a.pos.y < clip.y || c.pos.y >= clip.w) continue;
                const auto letter = letters.find({a.uv.x, a.uv.y});
                const char sign =
                    letter == letters.end() || a.pos.x < clip.x || c.pos.x > clip.z ? '\1' : letter->second;
                const ImFontGlyph* glyph = ImGui::GetFont()->FindGlyph(static_cast<ImWchar>(sign));
                if (glyph->U1 != c.uv.x) words.emplace_back("\1");
                const ImVec2 pen{a.pos.x - glyph->X0, a.pos.y - glyph->Y0};
                if (std::abs(pen.x - next.x) > 0.5F || std::abs(pen.y - next.y) > 0.5F) words.emplace_back();
                words.back() += sign;
                next = {pen.x + glyph->AdvanceX, pen.y};
                glyphs.emplace_back(a.pos.x, a.pos.y, c.pos.x, c.pos.y);
            }
        }
    return words;
}

// Every number that the inspector may tell about a survey.
std::set<std::int64_t> numbers_of(const Survey& survey, Stage& stage) {
    std::set<std::int64_t> numbers;
    const auto add = [&](const Rect& r) { numbers.insert({r.x, r.y, r.width, r.height}); };
    for (const ScrollSurvey& scroll : survey.scrolls) {
        numbers.insert(
            {scroll.number, scroll.z, scroll.file, scroll.destination_file, scroll.destination_graph});
        for (const char* field : {"camera", "ratio", "speed", "region1", "region2", "z", "x0", "y0", "x1",
                                  "y1", "alpha", "visible", "file", "graph1", "graph2"})
            numbers.insert(stage.field(field, scroll.number));
        add(scroll.view);
        for (const PlaneSurvey& plane : scroll.planes)
            add({plane.position.x, plane.position.y, plane.map_width, plane.map_height});
        for (const SpriteSurvey& sprite : scroll.sprites) {
            numbers.insert({sprite.z, sprite.file, sprite.graph});
            add({sprite.position.x, sprite.position.y, 0, 0});
            if (sprite.clip) add(*sprite.clip);
        }
        for (std::size_t i = 0; i <= scroll.sprites.size(); ++i) numbers.insert(static_cast<std::int64_t>(i));
        if (!scroll.camera) continue;
        const CameraSurvey& camera = *scroll.camera;
        add({camera.world.x, camera.world.y, camera.on_destination.x, camera.on_destination.y});
        for (const Rect& rect : {scroll.view, scroll.region1.value().rect, scroll.region2.value().rect}) {
            const Distances far = distances(camera.on_destination, rect);
            numbers.insert({far.left, far.right, far.top, far.bottom});
        }
    }
    return numbers;
}

}  // namespace

TEST_CASE("no number is ever cut or covered, however long it is and however small the window") {
    std::size_t told = 0;
    for (unsigned seed = 1; seed <= 25; ++seed) {
        Stage stage(seed);
        CAPTURE(seed);
        Inspector inspector(stage.engine);
        const auto long_number = [&] {
            return static_cast<std::int32_t>(stage.random()) >> stage.random() % 24;
        };
        const unsigned scrolls = 1 + stage.random() % 10;
        for (unsigned i = 0; i < scrolls; ++i)
            stage.engine.call("scroll_start",
                              {static_cast<std::int32_t>(i), 1, 10, 11, seed % 2 ? -1 : 3, 15, 1});
        stage.camera->x = long_number();
        stage.camera->y = long_number();
        stage.camera->z = long_number();
        stage.camera->region = 4;
        stage.field("camera") = host::Processes::id_of(*stage.camera);
        stage.field("region1") = 1;
        stage.field("region2") = 2;
        for (const char* field : {"x0", "y0", "x1", "y1", "z", "alpha"})
            stage.field(field, static_cast<int>(scrolls) - 1) = long_number();
        stage.engine.frame();
        inspector.look();
        const std::set<std::int64_t> numbers = numbers_of(inspector.survey(), stage);
        const Picture screen(stage.engine.screenshot());
        for (const Area& size : {Area{0, 0, 1356, 750},
                                 {0, 0, 900, 500},
                                 {0, 0, 492, 274},
                                 {0, 0, 300, 700},
                                 {0, 0, 230, 160},
                                 {0, 0, 90, 60}}) {
            CAPTURE(size.width);
            Canvas canvas(size.width, size.height);
            canvas.begin();
            const Area note = note_place("paused", lay_out_inspector(size.width, size.height).game);
            inspector.draw(canvas, screen, note);
            show_note("paused", note);
            canvas.finish();
            int covered = 0;
            for (const std::string& word : words_drawn(covered)) {
                CAPTURE(word);
                REQUIRE(word.find('\1') == std::string::npos);
                for (std::size_t at = 0; at < word.size(); ++at) {
                    if (std::isdigit(static_cast<unsigned char>(word[at])) == 0) continue;
                    const std::size_t start = at > 0 && word[at - 1] == '-' ? at - 1 : at;
                    std::size_t length = 0;
                    const std::int64_t number = std::stoll(word.substr(start), &length);
                    at = start + length;
                    // Digits behind a letter belong to a name, such as region1.
                    if (start > 0 && std::isalpha(static_cast<unsigned char>(word[start - 1])) != 0) continue;
                    REQUIRE(numbers.contains(number));
                    ++told;
                }
            }
            REQUIRE(covered == 0);
        }
    }
    CHECK(told > 5000);
}

TEST_CASE("the parts of a map that a view shows are the map pixels under its pixels") {
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) {
        const auto up_to = [&random](int most) {
            return 1 + static_cast<int>(random() % static_cast<unsigned>(most));
        };
        PlaneSurvey plane;
        plane.has_map = true;
        plane.map_width = up_to(12);
        plane.map_height = up_to(12);
        plane.position = {up_to(80) - 40, up_to(80) - 40};
        const int width = up_to(14), height = up_to(14);
        std::set<std::pair<std::int64_t, std::int64_t>> expected, got;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                expected.emplace(floor_mod(plane.position.x + x, plane.map_width),
                                 floor_mod(plane.position.y + y, plane.map_height));
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
    for (unsigned seed = 1; seed <= 150; ++seed) {
        Stage stage(seed);
        CAPTURE(seed);
        Surveyor surveyor(stage.engine);
        stage.start(static_cast<int>(stage.random() % 16), stage.random() % 2 ? 3 : -1);
        for (int step = 0; step < 8; ++step) {
            stage.field("x0") = stage.up_to(400) - 60;
            stage.field("y0") = stage.up_to(300) - 60;
            stage.engine.frame();  // a long way of the front plane undoes what is written to the back one
            stage.field("x1") = stage.up_to(400) - 60;
            stage.field("y1") = stage.up_to(300) - 60;
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
                    const std::string tried = describe(name, by);
                    CAPTURE(tried);
                    REQUIRE((stage.field(name) == before) == ((stopped & side) != 0));
                    stage.field(name) = before;
                    stage.engine.call("scroll_move", {0});
                }
            }
        }
    }
}

TEST_CASE("view, camera and regions are those of the frame that was drawn") {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Stage stage(seed);
        Surveyor surveyor(stage.engine);
        const bool by_region = stage.random() % 2;
        stage.start(15, by_region ? 3 : -1);
        stage.field("camera") = host::Processes::id_of(*stage.camera);
        stage.field("region1") = 1;
        stage.field("region2") = 2;
        stage.field("speed") = 3;
        stage.camera->resolution = 10;
        for (int step = 0; step < 10; ++step) {
            stage.camera->x += 10 * stage.up_to(30);
            stage.camera->y -= 10 * stage.up_to(9);
            if (by_region) stage.engine.regions().define(3, 5 + step, 5, 5 + step + stage.up_to(60), 50);
            stage.engine.frame();
            const Survey survey = surveyor.survey();
            const ScrollSurvey& scroll = survey.scrolls.at(0);
            const __RVKRegion__& region = stage.engine.regions().at(by_region ? 3 : 0);
            REQUIRE(scroll.view ==
                    Rect{region.x, region.y, region.x2 - region.x + 1, region.y2 - region.y + 1});
            REQUIRE(scroll.drawn);
            REQUIRE(survey.order == std::vector<int>{0});
            const CameraSurvey& camera = scroll.camera.value();
            REQUIRE(camera.world == Point{stage.camera->x / 10, stage.camera->y / 10});
            REQUIRE(camera.on_destination.x == scroll.view.x + camera.world.x - stage.field("x0"));
            REQUIRE(camera.on_destination.y == scroll.view.y + camera.world.y - stage.field("y0"));
            // What the outer region promises.
            const Distances far = distances(camera.on_destination, scroll.region2.value().rect);
            REQUIRE(std::min({far.left, far.right, far.top, far.bottom}) >= 0);
            REQUIRE(scroll.region1.value().rect == Rect{30, 20, 21, 21});
            // The camera has a picture: it is the one sprite, at the camera's place.
            REQUIRE(scroll.sprites.size() == 1);
            REQUIRE(scroll.sprites[0].position == camera.on_destination);
            REQUIRE(scroll.sprites[0].box ==
                    Rect{camera.on_destination.x - 3, camera.on_destination.y - 2, 7, 5});
        }
    }
}

TEST_CASE("sprites come in drawing order, with the clip of their own region") {
    Stage stage(4);
    Surveyor surveyor(stage.engine);
    stage.start(0, -1, 1);
    for (const int z : {5, 900, 40}) {
        ProcessLocals& sprite = stage.engine.processes().create(host::scroll_coordinates);
        sprite.file = 1;
        sprite.graph = 20;
        sprite.z = z;
        if (z == 40) sprite.region = 4;
    }
    stage.camera->graph = 0;
    stage.engine.frame();
    const ScrollSurvey scroll = surveyor.survey().scrolls.at(0);
    CHECK(scroll.layered);
    REQUIRE(scroll.sprites.size() == 3);
    CHECK(scroll.sprites[0].z == 900);
    CHECK(scroll.sprites[1].z == 40);
    CHECK(scroll.sprites[2].z == 5);
    CHECK_FALSE(scroll.sprites[0].clip);
    const Rect world{40, 30, 21, 21};
    const Rect on_screen{world.x - stage.field("x0"), world.y - stage.field("y0"), 21, 21};
    CHECK(scroll.sprites[1].clip.value() == common(on_screen, scroll.view));

    for (const int mask : {0, 1, 2}) {
        ProcessLocals& sprite = stage.engine.processes().create(host::scroll_coordinates);
        sprite.file = 1;
        sprite.graph = 99;
        sprite.scroll_mask = mask;
    }
    CHECK(surveyor.survey().scrolls.at(0).missing == MissingMaps{{{1, 99}, 2}});
}

TEST_CASE("whatever is taken away between frames, the inspector still looks, and draws") {
    for (unsigned seed = 1; seed <= 120; ++seed) {
        CAPTURE(seed);
        Stage stage(seed);
        InspectedPictures pictures(stage.engine, 1);
        stage.start(static_cast<int>(stage.random() % 16), static_cast<int>(stage.random() % 4));
        stage.engine.call("scroll_start", {5, 1, 11, 10, -1, 0, 3});
        stage.field("camera") = host::Processes::id_of(*stage.camera);
        for (int step = 0; step < 12; ++step) {
            if (stage.random() % 3) stage.engine.frame();
            switch (stage.random() % 12) {
                case 0:
                    stage.engine.files().unload_map(1, stage.random() % 2 ? 10 : 11);
                    break;
                case 1:
                    stage.engine.files().unload_file(1);
                    break;
                case 2:
                    stage.engine.call("scroll_stop", {stage.random() % 2 ? 0 : -1});
                    break;
                case 3:
                    stage.engine.regions().undefine(1);
                    break;
                case 4:
                    stage.engine.regions().define(1, INT32_MAX, INT32_MIN, INT32_MIN, INT32_MAX);
                    break;
                case 5:
                    if (stage.engine.processes().exists(host::Processes::id_of(*stage.camera)))
                        stage.engine.processes().destroy(host::Processes::id_of(*stage.camera));
                    break;
                case 6:
                    stage.engine.change_video_mode(
                        {stage.up_to(200), stage.up_to(100), 8 << stage.random() % 3});
                    break;
                case 7:
                    stage.field("region1") = static_cast<std::int32_t>(stage.random());
                    break;
                case 8:
                    stage.field("region2") = stage.up_to(70000);
                    break;
                case 9:
                    stage.field("camera") = static_cast<std::int32_t>(stage.random());
                    break;
                case 10:
                    stage.engine.call("scroll_set_destination", {-1, 1, 30, -1});
                    break;
                default:
                    stage.field("x0") = stage.field("y1") = static_cast<std::int32_t>(stage.random());
                    break;
            }
            const Picture screen(stage.engine.screenshot());
            const Picture picture = pictures.take(screen);
            REQUIRE(picture.width > screen.width);
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
    std::vector<std::vector<std::byte>> frames[2];
    for (const bool looked_at : {false, true}) {
        Stage stage(9);
        std::optional<Surveyor> surveyor;
        if (looked_at) surveyor.emplace(stage.engine, [] { return 0.0; });
        stage.start(5, 3, 3);
        stage.field("camera") = host::Processes::id_of(*stage.camera);
        for (int i = 0; i < 30; ++i) {
            stage.camera->x += 3;
            stage.engine.frame();
            if (looked_at) (void)surveyor->survey();
            frames[looked_at].push_back(stage.screen());
        }
        CHECK(stage.engine.faults().empty());
        CHECK(stage.engine.untouched().empty());
    }
    CHECK(frames[0] == frames[1]);
}

TEST_CASE("the panels leave the game its room, and the picture has just the room that it needs") {
    std::mt19937 random(6);
    for (int i = 0; i < 2000; ++i) {
        const int width = 16 + static_cast<int>(random() % 800),
                  height = 16 + static_cast<int>(random() % 600);
        const int scale = 1 + static_cast<int>(random() % 4);
        const Area size = inspected_size(width, height, scale);
        const InspectorLayout layout = lay_out_inspector(size.width, size.height);
        // In a picture smaller than the panels themselves those take their share.
        if (width * scale < 400 || height * scale < 640) continue;
        const Placement placed = place_screen(width, height, layout.game);
        REQUIRE(placed.scale == scale);
        REQUIRE(placed.at.width == layout.game.width);
        REQUIRE(placed.at.height == layout.game.height);
    }
    for (const int side : {1, 10, 100, 1000, 3000}) {
        const InspectorLayout layout = lay_out_inspector(side, side);
        CHECK(layout.game.width + layout.side.width >= side);
        CHECK(layout.game.height + layout.legend.height + layout.maps.height >= side);
        CHECK(layout.game.width >= side / 2);
        CHECK(layout.game.height >= side / 2);
    }
}

TEST_CASE("marks lie exactly on the game's pixels, and pictures repeat to the byte") {
    Picture pictures[2];
    for (Picture& picture : pictures) {
        Stage stage(12);
        InspectedPictures inspected(stage.engine, 6);
        stage.engine.regions().define(3, 20, 10, 59, 49);
        stage.engine.set_backdrop(0U);
        stage.start(15, 3);
        for (int i = 0; i < 3; ++i) {
            stage.engine.frame();
            picture = inspected.take(Picture(stage.engine.screenshot()));
        }
        const InspectorLayout layout = lay_out_inspector(picture.width, picture.height);
        const Area at = place_screen(96, 64, layout.game).at;
        REQUIRE(at.width == 6 * 96);
        const Rgba wanted = colour_of(Mark::view);
        const auto marked = [&](int x, int y) {
            const Rgba& got = picture.at(at.x + x, at.y + y);
            return got.r == wanted.r && got.g == wanted.g && got.b == wanted.b;
        };
        // The far edges, where no name tag lies: the outermost pixel is marked, the next one outside is not.
        for (const int y : {6 * 30, 6 * 45}) {
            CHECK(marked(6 * 60 - 1, y));
            CHECK_FALSE(marked(6 * 60, y));
            CHECK(marked(6 * 20, y));
            CHECK_FALSE(marked(6 * 20 - 1, y));
        }
        for (const int x : {6 * 30, 6 * 50}) {
            CHECK(marked(x, 6 * 50 - 1));
            CHECK_FALSE(marked(x, 6 * 50));
        }
    }
    const bool same =
        pictures[0].pixels.size() == pictures[1].pixels.size() &&
        std::memcmp(pictures[0].pixels.data(), pictures[1].pixels.data(), 4 * pictures[0].pixels.size()) == 0;
    CHECK(same);
}
