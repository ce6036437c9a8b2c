// The example host, run as a stranger would run it: its picture against the map it paints.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <sys/wait.h>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Colour = std::array<int, 3>;

// The example's map: dots in fields of 32 x 32 on stripes.
Colour map_colour(int x, int y) {
    const int dx = x % 32 - 16;
    const int dy = y % 32 - 16;
    if (dx * dx + dy * dy < 64) return {0xff, 0xf8, 0xd8};
    return {40 + x * 160 / 192, 60 + y * 150 / 160, 110 + std::abs((x + y) % 32 - 16) * 5};
}

int modulo(int a, int m) {
    return (a % m + m) % m;
}

// Screen pixel (x, y) after sixty moves of (5, -2): the map repeats through the region (16, 12) to (303,
// 187).
Colour expected_colour(int x, int y) {
    const bool in_view = x >= 16 && x <= 303 && y >= 12 && y <= 187;
    return in_view ? map_colour(modulo(x - 16 + 300, 192), modulo(y - 12 - 120, 160)) : Colour{0, 0, 0};
}

int run(const std::string& arguments) {
    const int status = std::system((ONE_PAGE_HOST " " + arguments).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string quoted(const std::string& path) {
    return "'" + path + "'";
}

}  // namespace

TEST_CASE("the host of one page shows its map through the region, repeated") {
    const std::string picture = ONE_PAGE_HOST ".ppm";
    REQUIRE(run(quoted(SCROLL2D_MODULE) + " " + quoted(picture)) == 0);

    std::ifstream in(picture, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::string header = "P6\n320 200\n255\n";
    REQUIRE(bytes.size() == header.size() + 320 * 200 * 3);
    REQUIRE(bytes.substr(0, header.size()) == header);

    int wrong = 0;
    for (int i = 0; i < 320 * 200; ++i) {
        const Colour wanted = expected_colour(i % 320, i / 320);
        for (int channel = 0; channel < 3; ++channel) {
            const auto byte =
                static_cast<std::uint8_t>(bytes[header.size() + static_cast<std::size_t>(i * 3 + channel)]);
            if (byte == wanted[static_cast<std::size_t>(channel)]) continue;
            if (++wrong == 1) MESSAGE("first wrong pixel: " << i % 320 << ", " << i / 320);
        }
    }
    CHECK(wrong == 0);
}

TEST_CASE("the host of one page says what failed") {
    const std::string module = quoted(SCROLL2D_MODULE);
    const struct {
        std::string arguments;
        int status;
        std::string message;
    } cases[] = {
        {"", 2, "usage: "},
        {module, 2, "usage: "},
        {"RVK_mod_scroll2D.so x.ppm", 1, "write a path with a slash, ./RVK_mod_scroll2D.so"},
        {"/no/such/module.so x.ppm", 1, "cannot load the module: /no/such/module.so"},
        {quoted(STANDIN_STEM "7.so") + " x.ppm", 1, "this is another library"},
        {quoted(STANDIN_STEM "0.so") + " x.ppm", 1, "registered no scroll_start"},
        {module + " /no/such/folder/x.ppm", 1, "cannot write /no/such/folder/x.ppm: No such file"},
        {module + " /dev/full", 1, "cannot write all of /dev/full"},
    };
    const std::string said = ONE_PAGE_HOST ".stderr";
    for (const auto& each : cases) {
        CAPTURE(each.arguments);
        CHECK(run(each.arguments + " 2> " + quoted(said)) == each.status);
        std::ifstream in(said);
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        CHECK_MESSAGE(text.find(each.message) != std::string::npos, text);
    }
}
