// The host as a painter: depths, sprites, frames and changes of video mode.
#include <doctest/doctest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include "host/engine.h"

namespace {

constexpr std::array<std::int32_t, 3> depths{8, 16, 32};

std::mt19937 random_source(5);

std::int32_t between(std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random_source);
}

bool coin() {
    return between(0, 1) != 0;
}

// Runs of pixels that are transparent, opaque, of a single bit of alpha, or of any kind.
void scatter(host::Bitmap& bitmap) {
    const std::int32_t longest = between(1, 25);
    std::int32_t kind = 0;
    std::int32_t left = 0;
    std::int32_t one_bit = 24;
    for (std::int32_t y = 0; y < bitmap.height(); ++y)
        for (std::int32_t x = 0; x < bitmap.width(); ++x) {
            if (left-- == 0) kind = between(0, 3), left = between(0, longest), one_bit = between(24, 31);
            bitmap.set_pixel(x, y,
                             kind == 0   ? 0
                             : kind == 1 ? random_source()
                             : kind == 2 ? random_source() | 0xFF000000U
                                         : (random_source() & 0xFFFFFFU) | 1U << one_bit);
        }
}

// What a pixel leaves behind, by its fields and their equation.
std::uint32_t model_put(std::uint32_t d, std::uint32_t s, std::int32_t bits, bool alpha, bool odd,
                        std::uint32_t opacity, std::uint32_t silhouette) {
    std::uint32_t a = bits == 32 && alpha ? s >> 24 : s == 0 ? 0 : 255;
    a = (a * opacity + 127) / 255;
    if (a == 0) return d;
    if (silhouette != 0) s = bits == 32 ? silhouette | 0xFF000000U : silhouette;
    if (a == 255) return s;
    if (bits == 8) return a < 128 && odd ? d : s;
    const auto mixed = [&](unsigned shift, std::uint32_t mask) {
        return ((s >> shift & mask) * a + (d >> shift & mask) * (255 - a) + 127) / 255 << shift;
    };
    if (bits == 16) return mixed(11, 31) | mixed(5, 63) | mixed(0, 31);
    return mixed(0, 255) | mixed(8, 255) | mixed(16, 255) | 0xFF000000U;
}

// The graphic's pixel that lies under destination pixel (x, y): turned back clockwise about the anchor, then
// unscaled, then mirrored. 0 where there is none; nothing so near to an edge of a pixel that rounding
// decides, which it does not at half or double size.
std::optional<std::uint32_t> model_source(const __RVKBlit2D__& b, host::SpriteNeeds needs,
                                          const host::Bitmap& graphic, std::int32_t x, std::int32_t y) {
    if (b.has_clip != 0 && (x < b.clip_x || x > b.clip_x2 || y < b.clip_y || y > b.clip_y2)) return 0;
    const double angle = needs.rotated ? b.angle * std::numbers::pi / 180000 : 0;
    const bool scaled = needs.scaled || needs.general;
    const double dx = x - b.pos_x;
    const double dy = y - b.pos_y;
    double u = dx * std::cos(angle) - dy * std::sin(angle);
    double v = dx * std::sin(angle) + dy * std::cos(angle);
    const double scale_x = scaled ? b.size * b.size_x / 10000.0 : 1;
    const double scale_y = scaled ? b.size * b.size_y / 10000.0 : 1;
    u /= scale_x;
    v /= scale_y;
    const __RVKPoint2D__ anchor = b.bitmap->cpoint_count > 0
                                      ? b.bitmap->cpoints[0]
                                      : __RVKPoint2D__{graphic.width() / 2, graphic.height() / 2};
    u = ((b.flags & 1) != 0 ? -u : u) + 0.5 + anchor.x;
    v = ((b.flags & 2) != 0 ? -v : v) + 0.5 + anchor.y;
    const auto is_open = [&](double place, double scale) {
        const bool exact = !needs.rotated && (scale == 0.5 || scale == 2);
        return !exact && std::abs(place - std::round(place)) < 0.002;
    };
    if (is_open(u, scale_x) || is_open(v, scale_y)) return std::nullopt;
    if (u < 0 || v < 0 || u >= graphic.width() || v >= graphic.height()) return 0;
    return graphic.pixel(static_cast<std::int32_t>(u), static_cast<std::int32_t>(v));
}

__RVKBlit2D__ random_sprite(host::Bitmap& graphic, host::Bitmap& target) {
    __RVKBlit2D__ b{};
    b.bitmap = &graphic.record();
    b.target = &target.record();
    for (std::int32_t* place : {&b.pos_x, &b.pos_y}) *place = between(-12, 43);
    b.angle = coin() ? between(-3, 3) * 90000 : between(-359999, 359999);
    for (std::int32_t* size : {&b.size, &b.size_x, &b.size_y})
        *size = std::array{100, 100, 200, between(20, 300)}[random_source() % 4];
    b.flags = between(0, 3);
    b.has_clip = between(0, 1);
    for (std::int32_t* edge : {&b.clip_x, &b.clip_y}) *edge = between(-5, 20);
    for (std::int32_t* edge : {&b.clip_x2, &b.clip_y2}) *edge = between(5, 36);
    b.word25 = std::array{0, -20, 127, 128, 254, 300, between(1, 253)}[random_source() % 7];
    b.word26 = coin() ? 0 : between(1, 255);
    graphic.set_alpha_flag(coin());
    const __RVKPoint2D__ anchor{between(-9, 9), between(-9, 9)};
    graphic.set_control_points({&anchor, coin() ? 1U : 0U});
    return b;
}

// What the module's entry does here: it paints three pixels of value 1, and uses another list meanwhile.
bool leaves_list_selected = false;
std::int32_t draw_entry(__RVKBlit2D__*) {
    host::Engine& live = *host::Engine::live();
    for (std::int32_t x = 1; x < 4; ++x) live.screen().set_pixel(x, 0, 1);
    live.graphics().SelectBlitList(live.blit_lists().find("OTHER"));
    live.graphics().NewBlit();
    live.graphics().ClearBlitList();
    return leaves_list_selected ? 0 : live.graphics().SelectBlitList(nullptr);
}
void add_entry() {
    __RVKBlit2D__* entry = host::Engine::live()->graphics().NewBlit();
    entry->z = 100;
    entry->draw = draw_entry;
}

// What the update hook saw: the screen's width, the depth, the reset flag.
std::array<std::int32_t, 3> seen{};
void look() {
    const Graphics2DInterface& g = host::Engine::live()->graphics();
    seen = {g.ScreenMap->width, g.Video->bits_per_pixel, g.Video->reset_flag};
}

}  // namespace

TEST_CASE("A sprite routine leaves exactly the pixels that a naive model leaves") {
    constexpr std::int32_t width = 67;
    constexpr std::int32_t pixels = width * 23;
    std::int32_t left_open = 0;
    for (std::size_t round = 0; round < 1500; ++round) {
        const std::int32_t bits = depths[round % 3];
        host::Engine engine(
            {.width = width, .height = 23, .bits_per_pixel = bits, .fence = host::Fence::after});
        const host::Bitmap& screen = engine.screen();
        host::Map& graphic = engine.files().create_map(1, 1, between(1, coin() ? 9 : 60), between(1, 9));
        scatter(graphic);
        scatter(engine.screen());
        __RVKBlit2D__ b = random_sprite(graphic, engine.screen());
        const host::SpriteNeeds needs{coin(), coin(), coin()};  // what else is in the entry is not looked at
        const auto opacity =
            static_cast<std::uint32_t>(needs.general ? 255 - std::clamp(b.word25, 0, 255) : 255);
        const auto silhouette = static_cast<std::uint32_t>(needs.general ? b.word26 : 0);
        std::vector<std::optional<std::uint32_t>> expected;
        for (std::int32_t i = 0; i < pixels; ++i) {
            const std::int32_t x = i % width;
            const std::int32_t y = i / width;
            expected.push_back(model_source(b, needs, graphic, x, y));
            if (auto& pixel = expected.back())
                pixel = model_put(screen.pixel(x, y), *pixel, bits, graphic.record().alpha_flag != 0,
                                  ((x ^ y) & 1) != 0, opacity, silhouette);
            else
                ++left_open;
        }
        CHECK(host::sprite_routine(engine.graphics(), needs)(&b) == 1);
        CAPTURE(round);
        for (std::int32_t i = 0; i < pixels; ++i) {
            const std::uint32_t drawn = screen.pixel(i % width, i / width);
            const std::uint32_t right = expected[static_cast<std::size_t>(i)].value_or(drawn);
            if (right != drawn) FAIL("pixel ", i, " is ", drawn, " in place of ", right);
        }
    }
    CHECK(left_open < 1500 * pixels / 20);
    // Numbers that make no sense do no harm.
    host::Engine engine({.width = 120, .height = 100, .bits_per_pixel = 8, .fence = host::Fence::before});
    host::Map& graphic = engine.files().create_map(1, 1, 21, 11);
    for (int round = 0; round < 2000; ++round) {
        __RVKBlit2D__ b = random_sprite(graphic, engine.screen());
        for (std::int32_t* word : {&b.pos_x, &b.pos_y, &b.angle, &b.size, &b.size_x, &b.size_y, &b.clip_x,
                                   &b.clip_x2, &b.clip_y, &b.clip_y2})
            if (between(0, 3) == 0) *word = coin() ? between(INT32_MIN, INT32_MAX) : INT32_MIN;
        CHECK(engine.graphics().BlitSpriteRotatedGeneral(&b) == 1);
    }
    // A map that is drawn onto itself, a pixel further: each pixel takes the one that was just drawn.
    engine.screen().fill(2);
    for (std::int32_t y = 0; y < 100; ++y) engine.screen().set_pixel(0, y, 1);
    __RVKBlit2D__ onto_itself{};
    onto_itself.bitmap = onto_itself.target = &engine.screen().record();
    onto_itself.pos_x = 61;
    onto_itself.pos_y = 50;
    engine.graphics().BlitSprite(&onto_itself);
    CHECK(engine.screen().pixel(119, 99) == 1);
    CHECK(engine.untouched().empty());
}

TEST_CASE("Colours survive the way through a depth as far as it can hold them, and black stays visible") {
    host::Palette palette;
    for (std::uint32_t pixel = 1; pixel <= 0xFFFF; ++pixel)
        REQUIRE(host::to_pixel(host::from_pixel(pixel, 16, palette, false), 16, palette, false) == pixel);
    for (int round = 0; round < 1000; ++round) {
        const std::uint32_t value = random_source();
        const host::Rgba colour = host::from_pixel(value, 32, palette, true);
        REQUIRE(host::to_pixel(colour, 32, palette, true) == value);
        const host::Rgba at_16 =
            host::from_pixel(host::to_pixel(colour, 16, palette, false), 16, palette, false);
        CHECK(at_16.a == (colour.a < 128 ? 0 : 255));
        if (colour.a < 128) continue;
        const auto squares = [&](host::Rgba c, int red, int green, int blue) {
            return std::pow((c.r - colour.r) / red, 2) + std::pow((c.g - colour.g) / green, 2) +
                   std::pow((c.b - colour.b) / blue, 2);
        };
        CHECK(squares(at_16, 5, 3, 5) == 0);  // off by 4, 2 and 4 at most
        const auto distance = [&](std::uint32_t index) {
            return squares(palette[static_cast<std::uint8_t>(index)], 1, 1, 1);
        };
        const std::uint32_t index = host::to_pixel(colour, 8, palette, false);
        REQUIRE(index != 0);
        for (std::uint32_t other = 1; other < 256; ++other) REQUIRE(distance(index) <= distance(other));
        // A palette that changes is asked anew, also for a colour that it was asked for before.
        const auto nearer = static_cast<std::uint8_t>(between(1, 255));
        const host::Rgba before = palette[nearer];
        palette.set(nearer, colour);
        CHECK(distance(palette.nearest(colour)) == 0);
        palette.set(nearer, before);
    }
    CHECK(host::from_pixel(0x04030201, 32, palette, true) == host::Rgba{1, 2, 3, 4});
    CHECK(host::to_pixel({0, 0, 0, 255}, 16, palette, false) == 0x0020);
    CHECK(host::to_pixel({0, 0, 0, 255}, 32, palette, false) == 0xFF000000);
    CHECK(host::to_pixel({0, 0, 0, 255}, 8, palette, false) == 1);
    CHECK(host::bytes_per_pixel(24) == 1);
}

TEST_CASE("A frame shows the backdrop, then by falling z the module's entries and the host's own sprites") {
    host::Engine engine({.width = 6, .height = 1, .bits_per_pixel = 16});
    for (std::int32_t graph = 1; graph <= 4; ++graph)
        engine.files().create_map(1, graph, graph == 4 ? 6 : 1, 1).fill(static_cast<std::uint32_t>(graph));
    engine.set_backdrop(1, 4);
    engine.graphics().CreateBlitList("OTHER", 1, 1);
    const HookRow hooks[] = {{2, add_entry}, {0, nullptr}};
    engine.registrar().RegisterHooks(hooks);
    engine.clear_faults();
    const auto place = [&](std::int32_t graph, std::int32_t x, std::int32_t z) -> ProcessLocals& {
        ProcessLocals& p = engine.processes().create(host::screen_coordinates);
        p.file = 1;
        p.graph = graph;
        p.x = x;
        p.z = z;
        return p;
    };
    ProcessLocals& before = place(2, 2, 99);
    before.status = 4;
    place(2, 5, 0).word33 = 0;
    place(3, 3, 101);
    place(3, 4, 100).resolution = 4;  // lands on pixel 1, after the entry of equal z
    const auto* row = static_cast<const std::uint16_t*>(engine.screen().record().pixels);
    engine.frame();
    CHECK(std::vector(row, row + 6) == std::vector<std::uint16_t>{4, 3, 2, 1, 4, 4});
    CHECK(engine.blit_lists().main().count() == 0);
    before.status = 3;
    engine.frame();
    CHECK(std::vector(row, row + 6) == std::vector<std::uint16_t>{4, 3, 1, 1, 4, 4});
    CHECK(engine.faults().empty());
    leaves_list_selected = true;
    engine.frame();
    CHECK(engine.faults() == std::vector<std::string>{"a draw routine left the list 'OTHER' selected"});
    CHECK(engine.untouched().empty());
}

TEST_CASE("The entry of a sprite on the screen holds what its process and its region say") {
    host::Engine engine({.width = 4, .height = 4, .bits_per_pixel = 8});
    for (std::int32_t graph = 1; graph <= 7; ++graph) engine.files().create_map(0, graph, 1, 1);
    engine.regions().define(5, 1, 2, 3, 4);
    host::BlitQueue& list = engine.blit_lists().main();
    ProcessLocals& p = engine.processes().create(host::screen_coordinates);
    auto* from = reinterpret_cast<std::int32_t*>(&p);
    const std::int32_t table[] = {7, 1, -2, 3, -4, 5, -6, 7};
    engine.processes().set_graph_table(host::Processes::id_of(p), table);
    for (int round = 0; round < 500; ++round) {
        for (const int word : {30, 31, 32, 38, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49})
            from[word] = between(1, 1000);
        for (const int word : {40, 41, 42, 43, 44})
            if (coin()) from[word] = word < 43 ? 100 : 0;
        p.resolution = between(0, 3);
        p.region = between(4, 5);
        // A few degrees around each direction, and whole turns more or less.
        const std::int32_t direction = between(0, 6);
        const std::int32_t away = between(-25000, 25000);  // the borders lie 25714 away
        p.angle = direction * 360000 / 7 + away + 360000 * between(-3, 3);
        engine.add_screen_processes();
        CAPTURE(direction);
        CAPTURE(away);
        CHECK(p.graph == direction + 1);
        CHECK((p.flags & 1) == direction % 2);
        CHECK((p.angle >= 0 && p.angle < 360000));
        REQUIRE(list.count() == 1);
        const __RVKBlit2D__& entry = *list.entries()[0];
        const auto* to = reinterpret_cast<const std::int32_t*>(&entry);
        CHECK(entry.pos_x == p.x / std::max(p.resolution, 1));
        CHECK(entry.pos_y == p.y / std::max(p.resolution, 1));
        for (const int word : {29, 32, 34, 35, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49})
            CHECK_MESSAGE(from[word] == to[word - 18], word);
        const bool scaled = p.size != 100 || p.size_x != 100 || p.size_y != 100;
        const host::SpriteNeeds needs{false, scaled, p.word43 != 0 || p.word44 != 0};
        CHECK((entry.draw == host::sprite_routine(engine.graphics(), needs)));
        CHECK(entry.has_clip == p.region - 4);
        if (p.region == 5) CHECK(std::vector(to + 37, to + 41) == std::vector{1, 3, 2, 4});
        list.clear();
    }
    for (const std::int32_t count : {0, 257, -1}) {
        const std::int32_t bad[] = {count, 1};
        engine.processes().set_graph_table(host::Processes::id_of(p), bad);
        engine.add_screen_processes();
        CHECK(list.count() == 0);
    }
}

TEST_CASE("A change of video mode brings a new screen, the maps at the new depth, and the update hook") {
    host::Engine engine({.width = 8, .height = 8, .bits_per_pixel = 32});
    const HookRow hooks[] = {{3, look}, {0, nullptr}};
    engine.registrar().RegisterHooks(hooks);
    const host::Image image{4, 1, {{255, 0, 0, 255}, {0, 0, 0, 255}, {9, 9, 9, 0}, {0, 255, 255, 255}}};
    host::Map& map = engine.files().create_map(1, 1, image, engine.palette(), false);
    host::Map& soft = engine.files().create_map(1, 2, image, engine.palette(), true);
    const __RVKPoint2D__ points[] = {{2, 1}, {-5, 900}};
    soft.set_control_points(points);
    CHECK(soft.pixel(2, 0) == 0x00090909);

    const MapRecord* old_screen = &engine.screen().record();
    std::int32_t depth_before_hook = 0;
    const auto before_hook = [&] { depth_before_hook = seen[0] == 0 ? map.bits_per_pixel() : 0; };
    engine.change_video_mode(
        {16, 4, 16},
        {.reset = true, .keep_old_screen = true, .convert_maps = true, .before_update = before_hook});
    CHECK(depth_before_hook == 16);
    CHECK(old_screen->width == 8);  // still there
    CHECK(engine.graphics().ScreenMap == &engine.screen().record());
    CHECK(seen == std::array{16, 16, 1});
    CHECK(engine.video().reset_flag == 0);
    CHECK(engine.regions().at(0).x2 == 15);
    const auto* pixels = static_cast<const std::uint16_t*>(map.record().pixels);
    CHECK(std::vector(pixels, pixels + 4) == std::vector<std::uint16_t>{0xF800, 0x0020, 0, 0x07FF});
    engine.change_video_mode({3, 3, 32}, {.convert_maps = true, .before_update = {}});
    CHECK(seen == std::array{3, 32, 0});
    CHECK(host::to_image(map, engine.palette()).pixels[2].a == 0);
    // What a map has besides its pixels stays with it.
    CHECK(map.record().alpha_flag == 0);
    CHECK(soft.record().alpha_flag == 1);
    REQUIRE(soft.record().cpoint_count == 2);
    CHECK(soft.record().cpoints[1].y == 900);
    CHECK(engine.screenshot().pixels[4] == host::Rgba{0, 0, 0, 255});
    CHECK_THROWS_AS(engine.change_video_mode({0, 3, 8}), host::Error);
    CHECK(engine.screen().width() == 3);
    CHECK(engine.untouched().empty());
}
