// Keys, pads and taps; pace; pause and step; where the screen lies; which files changed.
#include <SDL.h>
#include <doctest/doctest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

#include "player/common/pacer.h"
#include "player/common/placement.h"
#include "player/game/file_watch.h"
#include "player/window/devices.h"
#include "player/window/transport.h"

using namespace player;

namespace {

using Names = std::set<std::string>;

SDL_Event key_event(Uint32 type, SDL_Keycode key, SDL_Scancode scancode, Uint8 repeat = 0) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    event.key.keysym.scancode = scancode;
    event.key.repeat = repeat;
    return event;
}

SDL_Event stick_event(int axis, int value) {
    SDL_Event event{};
    event.type = SDL_CONTROLLERAXISMOTION;
    event.caxis.axis = static_cast<Uint8>(axis);
    event.caxis.value = static_cast<Sint16>(value);
    return event;
}

}  // namespace

TEST_CASE("a key is down while the script or a device holds it") {
    Keys keys;
    keys.play("left", true);
    keys.hold({"left", "right"});
    CHECK(keys.down("left"));
    keys.hold({});
    CHECK(keys.down("left"));
    CHECK_FALSE(keys.down("right"));
    keys.play("left", false);
    CHECK_FALSE(keys.down("left"));
    CHECK_THROWS_WITH((void)keys.down("lfet"), "there is no key \"lfet\" (did you mean \"left\"?)");
}

// Against a plain model: what is held at the end of a frame, and what went down in it, is seen in it.
TEST_CASE("no tap between two frames is lost, and no key stays down") {
    const SDL_Keycode codes[] = {SDLK_LSHIFT, SDLK_RSHIFT, SDLK_a, SDLK_7, SDLK_F12, SDLK_KP_ENTER};
    const SDL_Scancode scancodes[] = {SDL_SCANCODE_LSHIFT, SDL_SCANCODE_RSHIFT, SDL_SCANCODE_A,
                                      SDL_SCANCODE_7,      SDL_SCANCODE_F12,    SDL_SCANCODE_KP_ENTER};
    const char* const names[] = {"shift", "shift", "a", "7", "f12", "enter"};
    std::mt19937 random(5);
    Devices devices;
    bool held[6] = {};
    for (int frame = 0; frame < 2000; ++frame) {
        Names seen;
        for (unsigned count = random() % 4; count > 0; --count) {
            const std::size_t key = random() % 6;
            held[key] = !held[key];
            devices.take_event(key_event(held[key] ? SDL_KEYDOWN : SDL_KEYUP, codes[key], scancodes[key]));
            if (held[key]) seen.insert(names[key]);
        }
        for (std::size_t i = 0; i < 6; ++i)
            if (held[i]) seen.insert(names[i]);
        REQUIRE(devices.take_keys() == seen);
    }
}

TEST_CASE("losing the keyboard lets go of everything") {
    Devices devices;
    devices.take_event(key_event(SDL_KEYDOWN, SDLK_a, SDL_SCANCODE_A));
    SDL_Event lost{};
    lost.type = SDL_WINDOWEVENT;
    lost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    devices.take_event(lost);
    CHECK(devices.take_keys().empty());
}

TEST_CASE("a pad plays its own names and those of the keyboard") {
    Devices devices;
    SDL_Event button{};
    button.type = SDL_CONTROLLERBUTTONDOWN;
    button.cbutton.button = SDL_CONTROLLER_BUTTON_A;
    devices.take_event(button);
    CHECK(devices.take_keys() == Names{"pad_a", "space"});
    button.type = SDL_CONTROLLERBUTTONUP;
    devices.take_event(button);
    CHECK(devices.take_keys().empty());
    for (const auto& [named, key] : {std::pair("pad_l", ""), std::pair("pad_start", "enter")}) {
        CHECK_FALSE(Keys().down(named));
        if (*key) CHECK_FALSE(Keys().down(key));
    }
}

TEST_CASE("a stick is pressed beyond half and released well before it") {
    Devices devices;
    const auto after = [&devices](int axis, int value) {
        devices.take_event(stick_event(axis, value));
        return devices.take_keys();
    };
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 15000).empty());
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 20000) == Names{"pad_right", "right"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 14000) == Names{"pad_right", "right"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTY, -32768) == Names{"pad_right", "right", "pad_up", "up"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, -20000).contains("left"));
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTX, 0) == Names{"pad_up", "up"});
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTY, 0).empty());
    CHECK(after(SDL_CONTROLLER_AXIS_RIGHTX, 32767).empty());
}

TEST_CASE("the game keeps sixty frames a second on displays of any rate") {
    std::mt19937 random(7);
    for (const double rate : {30.0, 50.0, 59.94, 60.0, 75.0, 144.0, 1000.0}) {
        for (const bool locked : {false, true}) {
            if (locked && std::abs(rate - 60) > 1) continue;
            Pacer pacer(locked);
            double now = 100;
            int frames = 0, shown = 0;
            for (; now < 110; now += 1 / rate, ++shown) {
                // Showings come up to a millisecond late.
                const int due = pacer.due(now + 0.001 * static_cast<double>(random() % 1000) / 1000);
                REQUIRE(due <= Pacer::most_at_once);
                if (locked) REQUIRE(due == 1);
                frames += due;
            }
            CAPTURE(rate);
            CHECK(std::abs(frames - (locked ? shown : 600)) <= 2);
        }
    }
}

TEST_CASE("time in which nothing could be played is not caught up") {
    Pacer pacer;
    CHECK(pacer.due(0) == 1);
    CHECK(pacer.due(5) == 1);
    CHECK(pacer.due(5.001) == 0);
    CHECK(pacer.wait(5.001) == doctest::Approx(1 / 60.0 - 0.001));
}

TEST_CASE("pause, step and reload") {
    Transport transport;
    CHECK(transport.take_frame());
    transport.step();
    CHECK(transport.paused());
    CHECK(transport.take_frame());
    CHECK_FALSE(transport.take_frame());
    transport.loaded();  // while paused: its first frame is shown, no more
    CHECK(transport.take_frame());
    CHECK_FALSE(transport.take_frame());
    transport.toggle_pause();
    CHECK(transport.take_frame());
    transport.fail("it broke");
    transport.step();
    CHECK_FALSE(transport.take_frame());
    transport.toggle_pause();
    CHECK_FALSE(transport.take_frame());
    transport.loaded();
    CHECK_FALSE(transport.failed());
    CHECK(transport.take_frame());
}

TEST_CASE("the screen is enlarged by the largest whole number that fits, in the middle") {
    std::mt19937 random(11);
    const auto up_to = [&random](int most) {
        return 1 + static_cast<int>(random() % static_cast<unsigned>(most));
    };
    for (int i = 0; i < 20000; ++i) {
        const int width = up_to(400), height = up_to(300);
        const Area room{up_to(50), up_to(50), up_to(2000), up_to(1500)};
        const Placement placed = place_screen(width, height, room);
        const Area& at = placed.at;
        REQUIRE(at.x >= room.x);
        REQUIRE(at.y >= room.y);
        REQUIRE(at.x + at.width <= room.x + room.width);
        REQUIRE(at.y + at.height <= room.y + room.height);
        REQUIRE(std::abs((room.width - at.width) / 2 - (at.x - room.x)) <= 1);
        REQUIRE(std::abs((room.height - at.height) / 2 - (at.y - room.y)) <= 1);
        if (placed.shrunk) {
            REQUIRE((width > room.width || height > room.height));
            REQUIRE((at.width == room.width || at.height == room.height));
        } else {
            REQUIRE(at.width == placed.scale * width);
            REQUIRE(at.height == placed.scale * height);
            const int next = placed.scale + 1;
            REQUIRE((next * width > room.width || next * height > room.height));
        }
    }
    const Area shrunk = place_screen(640, 480, {0, 0, 320, 400}).at;
    CHECK(shrunk.width == 320);
    CHECK(shrunk.height == 240);
    CHECK(shrunk.y == 80);
}

TEST_CASE("a file that changes, goes or comes is noticed") {
    const auto folder =
        std::filesystem::temp_directory_path() / ("watch" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(folder);
    const std::string there = folder / "there", missing = folder / "missing";
    std::ofstream(there) << "one";
    const auto noted = [&] {
        FileWatch watch;
        watch.note(there);
        watch.note(missing);
        return watch;
    };
    FileWatch watch = noted();
    CHECK_FALSE(watch.changed());
    const auto time = std::filesystem::last_write_time(there);
    std::ofstream(there) << "longer";
    std::filesystem::last_write_time(there, time);
    CHECK(watch.changed() == there);
    watch.note(there);  // the first note counts
    CHECK(watch.changed() == there);
    watch = noted();
    std::filesystem::last_write_time(there,
                                     std::filesystem::last_write_time(there) + std::chrono::seconds(1));
    CHECK(watch.changed() == there);
    watch = noted();
    std::ofstream(missing) << "here now";
    CHECK(watch.changed() == missing);
    watch = noted();
    std::filesystem::remove(there);
    CHECK(watch.changed() == there);
    std::filesystem::remove_all(folder);
}
