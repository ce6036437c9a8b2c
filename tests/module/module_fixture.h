// The module as a host loads it, and what the directed tests ask of it.
//
// The tests see a scroll only as a host and a script see it: by its script element, its blit entry, the
// services and the pixels on the destination. SCROLL2D_MODULE is the path of the module.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "host/engine.h"
#include "tests/replaced.h"

namespace tests {

using host::ScriptError;
using Words = std::vector<std::int32_t>;

// Edges in the order of a region record, inclusive.
struct Rect {
    std::int32_t x, x2, y, y2;
};

struct Position {
    std::int32_t x, y;
    bool operator==(const Position&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Position& p) {
    return out << '(' << p.x << ", " << p.y << ')';
}

constexpr std::int32_t kFile = 1;
constexpr std::int32_t kHeight = 48;  // of the screen
constexpr std::int32_t kWidth = 64;

// A screen of 64 x 48 and the loaded module. Whatever a test does, the module must have kept to the contract
// by its end.
class Fixture {
  public:
    host::Engine engine;

    explicit Fixture(std::int32_t bits_per_pixel = 8, host::Fence fence = host::Fence::none)
        : engine(host::Options{
              .width = kWidth, .height = kHeight, .bits_per_pixel = bits_per_pixel, .fence = fence}) {
        engine.load(SCROLL2D_MODULE);
    }
    ~Fixture() {
        CHECK(engine.faults() == std::vector<std::string>{});
        CHECK(engine.untouched() == std::vector<std::string>{});
    }

    [[nodiscard]] Graphics2DInterface& graphics() { return engine.graphics(); }
    [[nodiscard]] const ScrollSystemInterface& services() const { return *engine.services(); }

    // A map of file 1 in which neighbours differ and no pixel is 0.
    host::Map& map(std::int32_t graph, std::int32_t width, std::int32_t height,
                   const std::vector<__RVKPoint2D__>& points = {}) {
        host::Map& made = engine.files().create_map(kFile, graph, width, height);
        made.set_control_points(points);
        paint(made, graph);
        return made;
    }
    static void paint(host::Bitmap& bitmap, std::int32_t seed) {
        for (std::int32_t y = 0; y < bitmap.height(); ++y)
            for (std::int32_t x = 0; x < bitmap.width(); ++x)
                bitmap.set_pixel(
                    x, y, static_cast<std::uint32_t>(1 + (seed * 37 + x * 3 + y * 71) % 251) * 0x01010101U);
    }

    std::int32_t call(const char* name, std::initializer_list<std::int32_t> arguments) {
        return engine.call(name, arguments).value;
    }
    // Starts a scroll from file 1 and asserts that it runs.
    void start(std::int32_t num, std::int32_t graph1, std::int32_t graph2 = 0, std::int32_t region = -1,
               std::int32_t flags = 0, std::int32_t mode = 0) {
        REQUIRE(call("scroll_start", {num, kFile, graph1, graph2, region, flags, mode}) == num);
    }
    [[nodiscard]] std::int32_t& script(std::int32_t num, const char* field) {
        return engine.global("scroll", num, field);
    }
    // The errors since the last time; asserted by value, so that each is reported exactly once.
    std::vector<ScriptError> errors() {
        std::vector<ScriptError> raised = engine.errors();
        engine.clear_errors();
        return raised;
    }

    [[nodiscard]] bool running(std::int32_t num) const { return services().GetProcessInScroll(num, 0) == 1; }
    [[nodiscard]] Position plane(std::int32_t number, std::int32_t num = 0) const {
        __RVKPoint2D__ at{-7777, -7777};
        const std::int32_t found = number == 1 ? services().GetScrollPos(num, 0, &at, nullptr)
                                               : services().GetScrollPos(num, 0, nullptr, &at);
        REQUIRE(found == 1);
        return {at.x, at.y};
    }
    void aim_script(std::int32_t number, Position to, std::int32_t num = 0) {
        script(num, number == 1 ? "x0" : "x1") = to.x;
        script(num, number == 1 ? "y0" : "y1") = to.y;
    }

    // Whether a frame has an entry for the scroll.
    [[nodiscard]] bool scheduled(std::int32_t num) {
        engine.run_hook(host::Hook::frame);
        const auto& entries = engine.blit_lists().main().entries();
        const bool found =
            std::any_of(entries.begin(), entries.end(), [&](const __RVKBlit2D__* e) { return e->id == num; });
        engine.blit_lists().main().clear();
        return found;
    }
    // Has the module draw one scroll by an entry of its own; whether the entry is marked as drawn must agree.
    bool draw(std::int32_t num = 0) {
        host::BlitQueue& main = engine.blit_lists().main();
        engine.blit_lists().select(nullptr);
        __RVKBlit2D__* const entry = main.add();
        entry->id = num;
        entry->z = script(num, "z");
        const std::int32_t drawn = services().BlitScroll2D(entry);
        CHECK(entry->drawn == drawn);
        CHECK(&engine.blit_lists().current() == &main);
        main.clear();
        return drawn == 1;
    }

    // Whether the screen shows the endlessly repeated map from `at` on inside the view, and `around` outside.
    [[nodiscard]] bool shows(const Rect& view, const host::Bitmap& map, Position at,
                             std::optional<std::uint32_t> around = {}) {
        const auto wrap = [](std::int64_t a, std::int64_t m) {
            return static_cast<std::int32_t>((a % m + m) % m);
        };
        for (std::int32_t y = 0; y < kHeight; ++y) {
            for (std::int32_t x = 0; x < kWidth; ++x) {
                const bool inside = x >= view.x && x <= view.x2 && y >= view.y && y <= view.y2;
                if (!inside && !around) continue;
                const std::uint32_t expected =
                    inside ? map.pixel(wrap(std::int64_t{at.x} + x - view.x, map.width()),
                                       wrap(std::int64_t{at.y} + y - view.y, map.height()))
                           : *around;
                const std::uint32_t actual = engine.screen().pixel(x, y);
                if (actual == expected) continue;
                MESSAGE("pixel (", x, ", ", y, ") is ", actual, ", not ", expected);
                return false;
            }
        }
        return true;
    }
};

}  // namespace tests

// Failing assertions print script errors as people read them.
template <>
struct doctest::StringMaker<std::vector<tests::ScriptError>> {
    static doctest::String convert(const std::vector<tests::ScriptError>& errors) {
        std::string text;
        for (const tests::ScriptError& e : errors) (text += e.text()) += "; ";
        return text.c_str();
    }
};
