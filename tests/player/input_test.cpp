// Keys, pads and taps; pace; where the screen lies; which files changed.
#include <SDL.h>
#include <doctest/doctest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include "player/common/pacer.h"
#include "player/common/placement.h"
#include "player/game/file_watch.h"
#include "player/window/devices.h"

using namespace player;

namespace {

using Names = std::set<std::string>;

SDL_Event key_event(bool down, SDL_Keycode key, std::size_t place) {
    SDL_Event event{.type = down ? SDL_KEYDOWN : SDL_KEYUP};
    event.key.keysym = {static_cast<SDL_Scancode>(place), key, 0, 0};
    return event;
}

}  // namespace

// Against a plain model: what is held at the end of a frame, and what went down in it, is seen in it.
TEST_CASE("no tap between two frames is lost, and no key stays down, not even when the keyboard is lost") {
    const std::pair<SDL_Keycode, const char*> keys[] = {{SDLK_LSHIFT, "shift"}, {SDLK_RSHIFT, "shift"},
                                                        {SDLK_a, "a"},          {SDLK_7, "7"},
                                                        {SDLK_F12, "f12"},      {SDLK_KP_ENTER, "enter"}};
    std::mt19937 random(5);
    Devices devices;
    bool held[6] = {};
    for (int frame = 0; frame < 2000; ++frame) {
        Names seen;
        for (unsigned count = random() % 4; count > 0; --count) {
            const std::size_t i = random() % 6;
            held[i] = !held[i];
            devices.take_event(key_event(held[i], keys[i].first, i));
            if (held[i]) seen.insert(keys[i].second);
        }
        for (std::size_t i = 0; i < 6; ++i)
            if (held[i]) seen.insert(keys[i].second);
        REQUIRE(devices.take_keys() == seen);
    }
    SDL_Event lost{.type = SDL_WINDOWEVENT};
    lost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    devices.take_event(lost);
    CHECK(devices.take_keys().empty());
}

TEST_CASE("each button of a pad plays its own name and that of a key") {
    const Names buttons[] = {{"pad_a", "space"},
                             {"pad_b", "ctrl"},
                             {"pad_x", "shift"},
                             {"pad_y", "alt"},
                             {"pad_back", "backspace"},
                             {},
                             {"pad_start", "enter"},
                             {},
                             {},
                             {"pad_l"},
                             {"pad_r"},
                             {"pad_up", "up"},
                             {"pad_down", "down"},
                             {"pad_left", "left"},
                             {"pad_right", "right"}};  // in SDL's order
    Devices devices;
    SDL_Event event{};
    for (const Names& names : buttons) {
        event.type = SDL_CONTROLLERBUTTONDOWN;
        devices.take_event(event);
        CHECK(devices.take_keys() == names);
        for (const std::string& name : names) CHECK_FALSE(Keys().down(name));  // there is a key of this name
        event.type = SDL_CONTROLLERBUTTONUP;
        devices.take_event(event);
        CHECK(devices.take_keys().empty());
        ++event.cbutton.button;
    }
}

TEST_CASE("a stick is pressed beyond half and released well before it") {
    Devices devices;
    const auto after = [&devices](int axis, int value) {
        SDL_Event event{.type = SDL_CONTROLLERAXISMOTION};
        event.caxis.axis = static_cast<Uint8>(axis);
        event.caxis.value = static_cast<Sint16>(value);
        devices.take_event(event);
        return devices.take_keys();
    };
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 15000).empty());
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 20000) == Names{"pad_right", "right"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 14000) == Names{"pad_right", "right"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTY, -32768) == Names{"pad_right", "right", "pad_up", "up"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, -20000).contains("left"));
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 0) == Names{"pad_up", "up"});
    CHECK(after(SDL_CONTROLLER_AXIS_RIGHTX, 32767) == Names{"pad_up", "up"});
}

TEST_CASE("the game keeps sixty frames a second on displays of any rate, and catches up with no long wait") {
    std::mt19937 random(7);
    for (const double rate : {30.0, 50.0, 59.94, 60.0, 75.0, 144.0, 1000.0})
        for (const bool locked : {false, true}) {
            if (locked && std::abs(rate - 60) > 1) continue;
            Pacer pacer(locked);
            int frames = 0, shown = 0;
            for (double now = 100; now < 110; now += 1 / rate, ++shown) {
                // Showings come up to a millisecond late.
                const int due = pacer.due(now + 0.001 * static_cast<double>(random() % 1000) / 1000);
                REQUIRE(due <= Pacer::most_at_once);
                if (locked) REQUIRE(due == 1);
                frames += due;
            }
            CAPTURE(rate);
            CHECK(std::abs(frames - (locked ? shown : 600)) <= 2);
        }
    Pacer pacer;
    CHECK(pacer.due(0) == 1);
    CHECK(pacer.due(5) == 1);
    CHECK(pacer.due(5.001) == 0);
    CHECK(pacer.wait(5.001) == doctest::Approx(1 / 60.0 - 0.001));
}

TEST_CASE("the screen is enlarged by the largest whole number that fits, in the middle") {
    std::mt19937 random(11);
    const auto up_to = [&random](int most) {
        return 1 + static_cast<int>(random() % static_cast<unsigned>(most));
    };
    for (int i = 0; i < 20000; ++i) {
        const int width = up_to(400), height = up_to(300);
        const Area room{up_to(50), up_to(50), up_to(2000), up_to(1500)};
        const auto [scale, shrunk, at] = place_screen(width, height, room);
        REQUIRE((at.width <= room.width && at.x == room.x + (room.width - at.width) / 2));
        REQUIRE((at.height <= room.height && at.y == room.y + (room.height - at.height) / 2));
        if (shrunk) {
            REQUIRE((width > room.width || height > room.height));
            REQUIRE((at.width == room.width || at.height == room.height));
            REQUIRE(std::abs(at.width * height - at.height * width) <= std::max(width, height));
        } else {
            REQUIRE((at.width == scale * width && at.height == scale * height));
            REQUIRE(((scale + 1) * width > room.width || (scale + 1) * height > room.height));
        }
    }
}

TEST_CASE("a file that changes, goes or comes is noticed") {
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / ("watch" + std::to_string(std::random_device{}()));
    fs::create_directory(folder);
    const std::string there = folder / "there", missing = folder / "missing";
    std::ofstream(there) << "one";
    const auto written = fs::last_write_time(there);
    const std::pair<std::string, std::function<void()>> changes[] = {
        {there, [&] { std::ofstream(there) << "longer", fs::last_write_time(there, written); }},
        {there, [&] { fs::last_write_time(there, written + std::chrono::seconds(1)); }},
        {missing, [&] { std::ofstream(missing) << "here now"; }},
        {there, [&] { fs::remove(there); }}};
    for (const auto& [changed, change] : changes) {
        FileWatch watch;
        for (const std::string& file : {there, missing, there}) watch.note(file);
        CHECK_FALSE(watch.changed());
        change();
        CHECK(watch.changed() == changed);
    }
    fs::remove_all(folder);
}
