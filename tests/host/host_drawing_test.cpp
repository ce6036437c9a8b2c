// The host as a painter: depths, sprites, frames and changes of video mode.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <random>

#include "host/engine.h"

namespace {

constexpr std::array<std::int32_t, 3> depths{8, 16, 32};

std::mt19937 random_source(5);

std::int32_t random_between(std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random_source);
}

std::uint32_t random_pixel(std::int32_t bits) {
    const std::uint32_t value = random_source();
    if (value % 3 == 0) return 0;
    return bits == 8 ? value & 0xFF : bits == 16 ? value & 0xFFFF : value;
}

void scatter(host::Bitmap& bitmap) {
    for (std::int32_t y = 0; y < bitmap.height(); ++y)
        for (std::int32_t x = 0; x < bitmap.width(); ++x)
            bitmap.set_pixel(x, y, random_pixel(bitmap.bits_per_pixel()));
}

// One colour channel of a mixture, by the equation.
std::uint32_t mixed(std::uint32_t d, std::uint32_t s, std::uint32_t a) {
    return (s * a + d * (255 - a) + 127) / 255;
}

// What a pixel leaves behind, by its fields.
std::uint32_t model_put(std::uint32_t d, std::uint32_t s, std::int32_t bits, bool alpha,
                        std::uint32_t opacity, bool odd) {
    std::uint32_t a = s == 0 ? 0 : 255;
    if (bits == 32 && alpha) a = s >> 24;
    a = (a * opacity + 127) / 255;
    if (a == 0) return d;
    if (a == 255) return s;
    if (bits == 8) return a < 128 && odd ? d : s;
    if (bits == 16)
        return mixed(d >> 11, s >> 11, a) << 11 | mixed(d >> 5 & 63, s >> 5 & 63, a) << 5 |
               mixed(d & 31, s & 31, a);
    return mixed(d & 255, s & 255, a) | mixed(d >> 8 & 255, s >> 8 & 255, a) << 8 |
           mixed(d >> 16 & 255, s >> 16 & 255, a) << 16 | 0xFF000000U;
}

struct Scene {
    __RVKBlit2D__ blit{};
    std::int32_t quarter_turns = 0;  // counter-clockwise
    std::int32_t scale_x = 1;        // whole factors, so that the model is exact
    std::int32_t scale_y = 1;
};

std::int32_t floor_div(std::int32_t a, std::int32_t b) {
    return a >= 0 ? a / b : -((b - 1 - a) / b);
}

// The graphic's pixel that lies under destination pixel (x, y), 0 where it has none. All in integers: a
// scaled pixel covers `scale` destination pixels, centred on the anchor's.
std::uint32_t model_source(const Scene& scene, const host::Bitmap& graphic, std::int32_t x, std::int32_t y) {
    std::int32_t dx = x - scene.blit.pos_x;
    std::int32_t dy = y - scene.blit.pos_y;
    for (std::int32_t i = 0; i < scene.quarter_turns; ++i) {
        const std::int32_t old_dx = dx;
        dx = -dy;  // a turn back, clockwise: what is above lies to the right
        dy = old_dx;
    }
    // Odd factors only: (2 dx + scale) / (2 scale) has no ties.
    std::int32_t u = floor_div(2 * dx + scene.scale_x, 2 * scene.scale_x);
    std::int32_t v = floor_div(2 * dy + scene.scale_y, 2 * scene.scale_y);
    if ((scene.blit.flags & 1) != 0) u = -u;
    if ((scene.blit.flags & 2) != 0) v = -v;
    const MapRecord& record = *scene.blit.bitmap;
    u += record.cpoint_count > 0 ? record.cpoints[0].x : graphic.width() / 2;
    v += record.cpoint_count > 0 ? record.cpoints[0].y : graphic.height() / 2;
    if (u < 0 || v < 0 || u >= graphic.width() || v >= graphic.height()) return 0;
    return graphic.pixel(u, v);
}

bool inside_clip(const __RVKBlit2D__& b, std::int32_t x, std::int32_t y) {
    return b.has_clip == 0 || (x >= b.clip_x && x <= b.clip_x2 && y >= b.clip_y && y <= b.clip_y2);
}

Scene random_scene(host::Bitmap& graphic, host::Bitmap& target) {
    Scene scene;
    __RVKBlit2D__& b = scene.blit;
    b.bitmap = &graphic.record();
    b.target = &target.record();
    b.pos_x = random_between(-12, target.width() + 12);
    b.pos_y = random_between(-12, target.height() + 12);
    b.flags = random_between(0, 3);
    b.has_clip = random_between(0, 1);
    b.clip_x = random_between(-5, 20);
    b.clip_x2 = random_between(5, target.width() + 5);
    b.clip_y = random_between(-5, 20);
    b.clip_y2 = random_between(5, target.height() + 5);
    b.size = b.size_x = b.size_y = 100;
    const std::array<std::int32_t, 7> translucencies{0, -20, 127, 128, 254, 300, random_between(1, 253)};
    b.word25 = translucencies[static_cast<std::size_t>(random_between(0, 6))];
    graphic.set_alpha_flag(random_between(0, 1) != 0);
    const __RVKPoint2D__ anchor{random_between(-9, 9), random_between(-9, 9)};
    graphic.set_control_points({&anchor, random_between(0, 1) != 0 ? 1U : 0U});
    return scene;
}

}  // namespace

TEST_CASE("A sprite routine leaves exactly the pixels that a naive model leaves") {
    for (int round = 0; round < 1500; ++round) {
        const std::int32_t bits = depths[static_cast<std::size_t>(round) % 3];
        host::Engine engine({.width = 31, .height = 27, .bits_per_pixel = bits, .fence = host::Fence::after});
        host::Map& graphic = engine.files().create_map(1, 1, random_between(1, 9), random_between(1, 9));
        scatter(graphic);
        scatter(engine.screen());
        Scene scene = random_scene(graphic, engine.screen());
        const host::SpriteNeeds needs{random_between(0, 1) != 0, random_between(0, 1) != 0,
                                      random_between(0, 1) != 0};
        // The others lie in the entry too, and must not be looked at.
        scene.blit.angle = random_between(-3, 3) * 90000;
        if (needs.rotated) scene.quarter_turns = (scene.blit.angle / 90000 + 4) % 4;
        scene.blit.size = random_between(0, 1) != 0 ? 100 : 300;
        scene.blit.size_x = random_between(0, 2) * 200 + 100;
        if (needs.scaled || needs.general) {
            scene.scale_x = scene.blit.size / 100 * scene.blit.size_x / 100;
            scene.scale_y = scene.blit.size / 100;
        }
        const auto opacity =
            needs.general ? 255U - static_cast<std::uint32_t>(std::clamp(scene.blit.word25, 0, 255)) : 255U;
        const bool alpha = graphic.record().alpha_flag != 0;

        host::Bitmap expected(31, 27, bits, host::Fence::none);
        for (std::int32_t y = 0; y < 27; ++y) {
            for (std::int32_t x = 0; x < 31; ++x) {
                const std::uint32_t d = engine.screen().pixel(x, y);
                const std::uint32_t s =
                    inside_clip(scene.blit, x, y) ? model_source(scene, graphic, x, y) : 0;
                expected.set_pixel(x, y, model_put(d, s, bits, alpha, opacity, ((x ^ y) & 1) != 0));
            }
        }
        CHECK(host::sprite_routine(engine.graphics(), needs)(&scene.blit) == 1);
        CAPTURE(round);
        for (std::int32_t y = 0; y < 27; ++y)
            for (std::int32_t x = 0; x < 31; ++x) {
                CAPTURE(x);
                CAPTURE(y);
                REQUIRE(engine.screen().pixel(x, y) == expected.pixel(x, y));
            }
    }
}

TEST_CASE("At any angle and size a sprite stays in its place, its area and its clip rectangle") {
    host::Engine engine({.width = 120, .height = 100, .bits_per_pixel = 8, .fence = host::Fence::before});
    host::Map& graphic = engine.files().create_map(1, 1, 21, 11);
    graphic.fill(9);
    for (int round = 0; round < 300; ++round) {
        engine.screen().fill(1);
        Scene scene = random_scene(graphic, engine.screen());
        graphic.set_control_points({});
        __RVKBlit2D__& b = scene.blit;
        b.pos_x = 60;
        b.pos_y = 50;
        b.has_clip = 0;
        b.angle = random_between(-359999, 359999);
        b.size = random_between(20, 300);
        CHECK(engine.graphics().BlitSpriteRotatedScaled(&b) == 1);
        double count = 0;
        double sum_x = 0;
        double sum_y = 0;
        for (std::int32_t y = 0; y < 100; ++y)
            for (std::int32_t x = 0; x < 120; ++x)
                if (engine.screen().pixel(x, y) == 9) {
                    count += 1;
                    sum_x += x;
                    sum_y += y;
                }
        const double scale = b.size / 100.0;
        CAPTURE(b.angle);
        CAPTURE(b.size);
        CHECK(std::abs(count - 21 * 11 * scale * scale) < 1 + 64 * scale);  // off by its outline at most
        CHECK(std::abs(sum_x / count - 60) < 1);
        CHECK(std::abs(sum_y / count - 50) < 1);
        CHECK(engine.screen().pixel(60, 50) == 9);
    }
    // Numbers that make no sense do no harm.
    for (int round = 0; round < 2000; ++round) {
        Scene scene = random_scene(graphic, engine.screen());
        __RVKBlit2D__& b = scene.blit;
        const std::array<std::int32_t*, 10> wild{&b.pos_x,  &b.pos_y,  &b.angle,   &b.size,   &b.size_x,
                                                 &b.size_y, &b.clip_x, &b.clip_x2, &b.clip_y, &b.clip_y2};
        for (std::int32_t* word : wild)
            if (random_between(0, 3) == 0)
                *word = random_between(0, 1) != 0 ? random_between(INT32_MIN, INT32_MAX) : INT32_MIN;
        CHECK(engine.graphics().BlitSpriteRotatedGeneral(&b) == 1);
    }
    CHECK(engine.untouched().empty());
}

TEST_CASE("A silhouette takes one pixel value and keeps the opacity of the graphic") {
    host::Engine engine({.width = 2, .height = 1, .bits_per_pixel = 32});
    host::Map& graphic = engine.files().create_map(1, 1, 2, 1);
    graphic.set_alpha_flag(true);
    graphic.set_pixel(0, 0, 0xFF112233);
    graphic.set_pixel(1, 0, 0x80112233);
    __RVKBlit2D__ blit{};
    blit.bitmap = &graphic.record();
    blit.target = &engine.screen().record();
    blit.pos_x = 1;
    blit.size = blit.size_x = blit.size_y = 100;
    blit.word26 = 0x0000C8;
    CHECK(engine.graphics().BlitSpriteGeneral(&blit) == 1);
    CHECK(engine.screen().pixel(0, 0) == 0xFF0000C8);
    CHECK(engine.screen().pixel(1, 0) == 0xFF000064);
}

TEST_CASE("Colours survive the way through a depth as far as it can hold them, and black stays visible") {
    const host::Palette palette;
    for (std::uint32_t pixel = 1; pixel <= 0xFFFF; ++pixel)
        REQUIRE(host::to_pixel(host::from_pixel(pixel, 16, palette, false), 16, palette, false) == pixel);
    for (int round = 0; round < 2000; ++round) {
        const std::uint32_t value = random_source();
        const host::Rgba colour{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                                static_cast<std::uint8_t>(value >> 16),
                                static_cast<std::uint8_t>(value >> 24)};
        REQUIRE(host::from_pixel(host::to_pixel(colour, 32, palette, true), 32, palette, true) == colour);
        const host::Rgba at_16 =
            host::from_pixel(host::to_pixel(colour, 16, palette, false), 16, palette, false);
        CHECK(at_16.a == (colour.a < 128 ? 0 : 255));
        if (colour.a < 128) continue;
        CHECK(std::abs(at_16.r - colour.r) <= 4);
        CHECK(std::abs(at_16.g - colour.g) <= 2);
        CHECK(std::abs(at_16.b - colour.b) <= 4);
        const auto distance = [&](std::uint32_t index) {
            const host::Rgba c = palette[static_cast<std::uint8_t>(index)];
            return (c.r - colour.r) * (c.r - colour.r) + (c.g - colour.g) * (c.g - colour.g) +
                   (c.b - colour.b) * (c.b - colour.b);
        };
        const std::uint32_t index = host::to_pixel(colour, 8, palette, false);
        REQUIRE(index != 0);
        for (std::uint32_t other = 1; other < 256; ++other) REQUIRE(distance(index) <= distance(other));
    }
    CHECK(host::to_pixel({0, 0, 0, 255}, 16, palette, false) == 0x0020);
    CHECK(host::to_pixel({0, 0, 0, 255}, 32, palette, false) == 0xFF000000);
    CHECK(host::to_pixel({1, 2, 3, 4}, 32, palette, true) == 0x04030201);
    CHECK(host::to_pixel({255, 0, 0, 255}, 16, palette, false) == 0xF800);
}

TEST_CASE("A frame shows the backdrop, then by falling z the module's entries and the host's own sprites") {
    for (const std::int32_t bits : depths) {
        host::Engine engine({.width = 6, .height = 1, .bits_per_pixel = bits});
        engine.load(STANDIN_STEM "0.so");
        for (std::int32_t graph = 1; graph <= 4; ++graph)
            engine.files()
                .create_map(1, graph, graph == 4 ? 6 : 1, 1)
                .fill(static_cast<std::uint32_t>(graph));
        engine.set_backdrop(1, 4);
        const auto place = [&](std::int32_t type, std::int32_t graph, std::int32_t x,
                               std::int32_t z) -> ProcessLocals& {
            ProcessLocals& p = engine.processes().create(type);
            p.file = 1;
            p.graph = graph;
            p.x = x;
            p.z = z;
            return p;
        };
        // The stand-in's entry has z 100 and draws its processes, graph 1, at once.
        for (std::int32_t x = 1; x < 4; ++x) place(host::scroll_coordinates, 1, x, 0);
        ProcessLocals& before = place(host::screen_coordinates, 2, 2, 99);
        place(host::screen_coordinates, 3, 3, 101);
        place(host::screen_coordinates, 3, 4, 100).resolution =
            4;  // lands on pixel 1, after the entry of equal z
        const auto row = [&] {
            std::string pixels;
            for (std::int32_t x = 0; x < 6; ++x) pixels += std::to_string(engine.screen().pixel(x, 0));
            return pixels;
        };
        engine.run_hook(host::Hook::frame);
        REQUIRE(engine.blit_lists().main().count() == 1);
        const __RVKBlit2D__* entry = engine.blit_lists().main().entries()[0];
        CHECK(entry->id == 3);
        CHECK(entry->drawn == 0);
        engine.prepare_screen();
        engine.add_screen_processes();
        engine.draw_main_list();
        CHECK(row() == "432144");
        CHECK(entry->drawn == 1);
        CHECK(engine.blit_lists().main().count() == 0);

        engine.set_suspended(true);
        before.status = 3;
        engine.frame();
        CHECK(row() == "434344");
        before.status = 4;
        before.region = 5;
        engine.regions().define(5, 3, 0, 5, 0);
        before.graph_table = nullptr;
        const std::int32_t table[] = {2, 2, -3};
        engine.processes().set_graph_table(host::Processes::id_of(before), table);
        before.angle = -180000;
        before.x = 5;
        engine.frame();
        CHECK(row() == "434343");
        CHECK(before.graph == 3);
        CHECK(before.flags == 1);
        CHECK(before.angle == 180000);

        engine.set_suspended(false);
        engine.call("leave_selected", {1});
        engine.frame();
        REQUIRE(engine.faults().size() == 1);
        CHECK(engine.faults()[0] == "a draw routine left the list 'STANDIN' selected");
        CHECK(engine.untouched().empty());
    }
}

TEST_CASE(
    "A graph table turns an angle into the nearest of its directions, mirrored where the code is negative") {
    host::Engine engine({.width = 4, .height = 4, .bits_per_pixel = 8});
    for (std::int32_t graph = 1; graph <= 7; ++graph) engine.files().create_map(0, graph, 1, 1);
    ProcessLocals& p = engine.processes().create(host::screen_coordinates);
    const std::int32_t table[] = {7, 1, -2, 3, -4, 5, -6, 7};
    engine.processes().set_graph_table(host::Processes::id_of(p), table);
    for (int round = 0; round < 500; ++round) {
        // A few degrees around each direction, and whole turns more or less.
        const std::int32_t direction = random_between(0, 6);
        const std::int32_t away = random_between(-25000, 25000);  // the borders lie 25714 away
        p.angle = direction * 360000 / 7 + away + 360000 * random_between(-3, 3);
        engine.frame();
        CAPTURE(direction);
        CAPTURE(away);
        CHECK(p.graph == direction + 1);
        CHECK(p.flags == direction % 2);
        CHECK(p.angle >= 0);
        CHECK(p.angle < 360000);
    }
    for (const std::int32_t count : {0, 257, -1}) {
        const std::int32_t bad[] = {count, 1};
        engine.processes().set_graph_table(host::Processes::id_of(p), bad);
        engine.add_screen_processes();
        CHECK(engine.blit_lists().main().count() == 0);
    }
}

TEST_CASE("A change of video mode brings a new screen, the maps at the new depth, and the update hook") {
    host::Engine engine({.width = 8, .height = 8, .bits_per_pixel = 32});
    engine.load(STANDIN_STEM "0.so");
    host::Image image{2, 2, {{255, 0, 0, 255}, {0, 0, 0, 255}, {9, 9, 9, 0}, {0, 255, 255, 255}}};
    host::Map& map = engine.files().create_map(1, 1, image, engine.palette(), false);
    image.pixels[2] = host::to_image(map, engine.palette()).pixels[2];
    CHECK(image.pixels[2].a == 0);

    const MapRecord* old_screen = &engine.screen().record();
    bool asked = false;
    engine.change_video_mode(
        {16, 4, 16}, {.reset = true, .keep_old_screen = true, .convert_maps = true, .before_update = [&] {
                          asked = true;
                          CHECK(engine.global("probe", 2, "a") == 5);
                          CHECK(map.bits_per_pixel() == 16);
                      }});
    CHECK(asked);
    CHECK(old_screen->width == 8);  // still there
    CHECK(engine.graphics().ScreenMap == &engine.screen().record());
    CHECK(engine.global("probe", 2, "a") == 16);
    CHECK(engine.global("probe", 2, "b") == 161);
    CHECK(engine.video().reset_flag == 0);
    CHECK(engine.regions().at(0).x2 == 15);
    CHECK(map.pixel(0, 0) == 0xF800);
    CHECK(map.pixel(1, 0) == 0x0020);
    CHECK(map.pixel(0, 1) == 0);
    CHECK(map.pixel(1, 1) == 0x07FF);
    CHECK(host::bytes_per_pixel(24) == 1);
    engine.change_video_mode({3, 3, 24});
    CHECK(engine.global("probe", 2, "b") == 240);
    CHECK(engine.screen().pitch() == 3);
    CHECK(engine.screenshot().pixels[4] == host::Rgba{0, 0, 0, 255});
    CHECK_THROWS_AS(engine.change_video_mode({0, 3, 8}), host::Error);
    CHECK(engine.screen().width() == 3);
    CHECK(engine.untouched().empty());
}
