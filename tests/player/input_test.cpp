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

SDL_Event key_event(Uint32 type, SDL_Keycode key, SDL_Scancode scancode) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    event.key.keysym.scancode = scancode;
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
TEST_CASE("no tap between two frames is lost, and no key stays down, not even when the keyboard is lost") {
    const struct {
        SDL_Keycode code;
        SDL_Scancode scancode;
        const char* name;
    } keys[] = {{SDLK_LSHIFT, SDL_SCANCODE_LSHIFT, "shift"},
                {SDLK_RSHIFT, SDL_SCANCODE_RSHIFT, "shift"},
                {SDLK_a, SDL_SCANCODE_A, "a"},
                {SDLK_7, SDL_SCANCODE_7, "7"},
                {SDLK_F12, SDL_SCANCODE_F12, "f12"},
                {SDLK_KP_ENTER, SDL_SCANCODE_KP_ENTER, "enter"}};
    std::mt19937 random(5);
    Devices devices;
    bool held[6] = {};
    for (int frame = 0; frame < 2000; ++frame) {
        Names seen;
        for (unsigned count = random() % 4; count > 0; --count) {
            const std::size_t i = random() % 6;
            held[i] = !held[i];
            devices.take_event(key_event(held[i] ? SDL_KEYDOWN : SDL_KEYUP, keys[i].code, keys[i].scancode));
            if (held[i]) seen.insert(keys[i].name);
        }
        for (std::size_t i = 0; i < 6; ++i)
            if (held[i]) seen.insert(keys[i].name);
        REQUIRE(devices.take_keys() == seen);
    }
    SDL_Event lost{};
    lost.type = SDL_WINDOWEVENT;
    lost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    devices.take_event(lost);
    CHECK(devices.take_keys().empty());
}

TEST_CASE("each button of a pad plays its own name and that of a key") {
    const std::pair<int, Names> buttons[] = {{SDL_CONTROLLER_BUTTON_A, {"pad_a", "space"}},
                                             {SDL_CONTROLLER_BUTTON_B, {"pad_b", "ctrl"}},
                                             {SDL_CONTROLLER_BUTTON_X, {"pad_x", "shift"}},
                                             {SDL_CONTROLLER_BUTTON_Y, {"pad_y", "alt"}},
                                             {SDL_CONTROLLER_BUTTON_BACK, {"pad_back", "backspace"}},
                                             {SDL_CONTROLLER_BUTTON_START, {"pad_start", "enter"}},
                                             {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, {"pad_l"}},
                                             {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, {"pad_r"}},
                                             {SDL_CONTROLLER_BUTTON_DPAD_UP, {"pad_up", "up"}},
                                             {SDL_CONTROLLER_BUTTON_DPAD_DOWN, {"pad_down", "down"}},
                                             {SDL_CONTROLLER_BUTTON_DPAD_LEFT, {"pad_left", "left"}},
                                             {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, {"pad_right", "right"}}};
    Devices devices;
    for (const auto& [button, names] : buttons) {
        SDL_Event event{};
        event.type = SDL_CONTROLLERBUTTONDOWN;
        event.cbutton.button = static_cast<Uint8>(button);
        devices.take_event(event);
        CHECK(devices.take_keys() == names);
        for (const std::string& name : names) CHECK_FALSE(Keys().down(name));  // there is a key of this name
        event.type = SDL_CONTROLLERBUTTONUP;
        devices.take_event(event);
        CHECK(devices.take_keys().empty());
    }
}

TEST_CASE("a stick is pressed beyond half and released well before it") {
    Devices devices;
    const auto after = [&devices](int axis, int value) {
        SDL_Event event{};
        event.type = SDL_CONTROLLERAXISMOTION;
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
    CHECK(after(SDL_CONTROLLER_AXIS_LEFTY, 0).empty());
    CHECK(after(SDL_CONTROLLER_AXIS_RIGHTX, 32767).empty());
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
        REQUIRE(at.width <= room.width);
        REQUIRE(at.height <= room.height);
        REQUIRE(at.x == room.x + (room.width - at.width) / 2);
        REQUIRE(at.y == room.y + (room.height - at.height) / 2);
        if (shrunk) {
            REQUIRE((width > room.width || height > room.height));
            REQUIRE((at.width == room.width || at.height == room.height));
        } else {
            REQUIRE((at.width == scale * width && at.height == scale * height));
            REQUIRE(((scale + 1) * width > room.width || (scale + 1) * height > room.height));
        }
    }
    const Area shrunk = place_screen(640, 480, {0, 0, 320, 400}).at;
    CHECK((shrunk.width == 320 && shrunk.height == 240));
}

TEST_CASE("a file that changes, goes or comes is noticed") {
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / ("watch" + std::to_string(std::random_device{}()));
    fs::create_directory(folder);
    const std::string there = folder / "there", missing = folder / "missing";
    std::ofstream(there) << "one";
    const auto write_at_same_time = [&] {
        const auto time = fs::last_write_time(there);
        std::ofstream(there) << "longer";
        fs::last_write_time(there, time);
    };
    const std::pair<std::string, std::function<void()>> changes[] = {
        {there, write_at_same_time},
        {there, [&] { fs::last_write_time(there, fs::last_write_time(there) + std::chrono::seconds(1)); }},
        {missing, [&] { std::ofstream(missing) << "here now"; }},
        {there, [&] { fs::remove(there); }}};
    for (const auto& [changed, change] : changes) {
        FileWatch watch;
        watch.note(there);
        watch.note(missing);
        CHECK_FALSE(watch.changed());
        change();
        CHECK(watch.changed() == changed);
        watch.note(there);  // the first note counts
        CHECK(watch.changed() == changed);
    }
    fs::remove_all(folder);
}
