// The window, by SDL's driver that needs no display, with events pushed as SDL would.
#include "player/window/window.h"

#include <SDL.h>
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

using namespace player;

namespace {

// A script in a folder of its own, played by a clock of its own.
class Played {
  public:
    explicit Played(const std::string& script, int bits_per_pixel = 32)
        : folder_(std::filesystem::temp_directory_path() /
                  ("window" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directory(folder_);
        write(script);
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        Options options;
        options.script = path();
        options.module = SCROLL2D_MODULE;
        options.width = 64;
        options.height = 48;
        options.bits_per_pixel = bits_per_pixel;
        window_ = std::make_unique<Window>(options);
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    }
    ~Played() { std::filesystem::remove_all(folder_); }

    void write(const std::string& script) const { std::ofstream(path()) << script; }
    [[nodiscard]] std::string path() const { return folder_ / "game.lua"; }
    Window& window() { return *window_; }
    [[nodiscard]] SDL_Window* sdl() const { return SDL_GetWindowFromID(1); }  // the first since SDL began

    bool turn() {
        now_ += 1 / frames_per_second;
        return window_->turn(now_);
    }
    void push(SDL_Keycode key, bool down, int modifiers = 0) {
        SDL_Event event{};
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = key;
        event.key.keysym.scancode = SDL_GetScancodeFromKey(key);
        event.key.keysym.mod = static_cast<Uint16>(modifiers);
        SDL_PushEvent(&event);
    }
    void tap(SDL_Keycode key, int modifiers = 0) {
        push(key, true, modifiers);
        push(key, false, modifiers);
    }
    int frames() { return window_->session() ? window_->session()->game.frames_drawn : -1; }

  private:
    std::filesystem::path folder_;
    std::unique_ptr<Window> window_;
    double now_ = 1000;
};

}  // namespace

TEST_CASE("the script reads the keyboard, and the window's own keys do not reach it") {
    Played played(R"(
        new_map(1, 1, 1, 1, "#ffffff")
        while true do
            if key("right") then process{file = 1, graph = 1} end
            if key("f3") or key("escape") or key("enter") then error("a key of the window") end
            frame()
        end)");
    REQUIRE(played.turn());
    const auto count = [&] { return played.window().session()->game.engine.processes().count(); };
    const auto before = count();
    played.tap(SDLK_RIGHT);
    played.turn();
    played.turn();
    CHECK(count() == before + 1);
    played.push(SDLK_RIGHT, true);
    for (int i = 0; i < 5; ++i) played.turn();
    CHECK(count() == before + 6);
    played.push(SDLK_RIGHT, false);
    played.turn();
    played.push(SDLK_RETURN, true, KMOD_LALT);
    played.push(SDLK_RETURN, false);
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F3, SDLK_F1}) played.tap(key);
    played.turn();
    CHECK(played.window().transport().error().empty());
    CHECK(played.window().shows_keys());
    CHECK(count() == before + 6);
    CHECK(played.frames() == 10);
}

TEST_CASE("a key that comes up with Alt held is up") {
    Played played("frame() assert(key('enter')) frame() assert(not key('enter')) quit(3)");
    played.push(SDLK_RETURN, true);
    played.turn();
    played.turn();
    played.push(SDLK_RETURN, false, KMOD_LALT);
    while (played.turn()) {
    }
    CHECK(played.window().exit_status() == 3);
}

TEST_CASE("pause and single steps") {
    Played played("while true do frame() end");
    for (int i = 0; i < 3; ++i) played.turn();
    played.tap(SDLK_F3);
    for (int i = 0; i < 3; ++i) played.turn();
    CHECK(played.frames() == 3);
    CHECK(played.window().title() == "game.lua - paused");
    played.tap(SDLK_F4);
    for (int i = 0; i < 3; ++i) played.turn();
    CHECK(played.frames() == 4);
    played.tap(SDLK_F3);
    played.turn();
    CHECK(played.frames() == 5);
}

TEST_CASE("a script's error is shown, and the window waits for a better script") {
    Played played("frame(2) broken()");
    for (int i = 0; i < 5; ++i) REQUIRE(played.turn());
    CHECK(played.window().transport().error().find("game.lua:1:") != std::string::npos);
    CHECK(played.frames() == 2);
    played.write("syntax error");
    played.tap(SDLK_F5);
    REQUIRE(played.turn());
    CHECK(played.window().session() == nullptr);
    CHECK(played.window().transport().failed());
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F4, SDLK_F2, SDLK_F1}) played.tap(key);
    REQUIRE(played.turn());
    for (int i = 0; i < 40; ++i) played.turn();
    played.write("while true do frame() end");
    for (int i = 0; i < 40; ++i) played.turn();
    CHECK(played.window().title() == "game.lua - stopped by an error - game.lua has changed: F5 loads it");
    played.tap(SDLK_F3);
    played.tap(SDLK_F5);
    for (int i = 0; i < 3; ++i) played.turn();
    CHECK(played.window().title() == "game.lua");
    CHECK(played.frames() > 0);
}

TEST_CASE("the window closes by its button, by Escape, and when the game quits with its status") {
    for (const bool button : {true, false}) {
        Played played("while true do frame() end");
        CHECK(played.turn());
        if (button) {
            SDL_Event quit{};
            quit.type = SDL_QUIT;
            SDL_PushEvent(&quit);
        } else {
            played.push(SDLK_ESCAPE, true);
        }
        CHECK_FALSE(played.turn());
        CHECK(played.window().exit_status() == 0);
    }
    Played played("frame(3) quit(7)");
    int turns = 1;
    while (played.turn()) ++turns;
    CHECK(turns == 4);
    CHECK(played.window().exit_status() == 7);
}

TEST_CASE(
    "a pause that was asked for during an error holds the first frame of the game that is loaded next") {
    Played played("broken()");
    played.turn();
    REQUIRE(played.window().transport().failed());
    played.write("while true do frame() end");
    played.tap(SDLK_F3);
    played.tap(SDLK_F5);
    for (int i = 0; i < 5; ++i) played.turn();
    CHECK(played.frames() == 1);
}

TEST_CASE("a game that changes the video mode is shown at each depth") {
    for (const int depth : {8, 16, 32}) {
        Played played(
            "for i = 1, 9 do set_mode(20 * i, 100 // i, " + std::to_string(depth) + ") frame() end quit()",
            depth);
        while (played.turn()) {
        }
        CHECK(played.window().transport().error() == "");
        CHECK(played.frames() == 10);
    }
}

TEST_CASE("the inspector comes and goes at any moment of a game, and of its errors") {
    Played played(R"(
        new_map(1, 10, 200, 100, "#336699")
        new_map(1, 20, 4, 4, "#ffffff")
        define_region(1, 5, 5, 40, 30)
        local hero = process{ctype = c_scroll, file = 1, graph = 20, x = 50, y = 50}
        scroll_start(0, 1, 10, 10, 1, 5)
        scroll[0].camera = hero
        for i = 1, 40 do
            hero.x = hero.x + 5
            if i == 10 then set_mode(100, 80, 16) end
            if i == 15 then kill(hero) end
            if i == 20 then scroll_stop(0) end
            if i == 25 then unload_map(1, 10) end
            frame()
        end
        error("the end"))");
    played.tap(SDLK_F2);
    REQUIRE(played.turn());
    CHECK(played.window().inspects());
    for (int i = 0; i < 60; ++i) {
        if (i % 7 == 0) played.tap(SDLK_F2);
        if (i % 11 == 0) played.tap(SDLK_F4);
        if (i % 11 == 5) played.tap(SDLK_F3);
        REQUIRE(played.turn());
    }
    played.write("syntax error");
    for (int i = 0; i < 4; ++i) {
        played.tap(i == 1 ? SDLK_F5 : SDLK_F2);
        REQUIRE(played.turn());
    }
    CHECK(played.window().session() == nullptr);
}

TEST_CASE("the window is drawn when something new is to be seen, and only while it is seen") {
    Played played("while true do frame() end");
    const auto after_turns = [&] {
        const int before = played.window().showings();
        for (int i = 0; i < 10; ++i) played.turn();
        return played.window().showings() - before;
    };
    CHECK(after_turns() == 10);
    played.tap(SDLK_F3);
    played.turn();
    CHECK(after_turns() > 0);  // until the panels have settled
    CHECK(after_turns() == 0);
    played.tap(SDLK_F1);
    CHECK(after_turns() > 0);
    played.tap(SDLK_F3);
    played.turn();
    SDL_HideWindow(played.sdl());
    const int frames = played.frames();
    CHECK(after_turns() == 0);
    CHECK(played.frames() == frames);
    SDL_ShowWindow(played.sdl());
    CHECK(after_turns() == 10);
    CHECK(played.frames() == frames + 10);
    played.write("broken(");
    played.tap(SDLK_F5);
    CHECK(after_turns() > 1);  // the message has a size of its own
}

TEST_CASE("the window fits what it shows, but for the time of full screen, and keeps a size of its user's") {
    const auto shown = [](const std::vector<SDL_Keycode>& keys, int width = 0) {
        Played played("while true do frame() end");
        played.turn();
        if (width > 0) SDL_SetWindowSize(played.sdl(), width, 500);
        for (const SDL_Keycode key : keys) {
            played.tap(key);
            played.turn();
        }
        played.turn();
        CHECK((SDL_GetWindowFlags(played.sdl()) & SDL_WINDOW_FULLSCREEN_DESKTOP) == 0);
        SDL_GetWindowSize(played.sdl(), &width, nullptr);
        return width;
    };
    const int plain = shown({}), inspected = shown({SDLK_F2});
    CHECK(plain != inspected);
    CHECK(shown({SDLK_F11, SDLK_F2, SDLK_F11}) == inspected);
    CHECK(shown({SDLK_F11, SDLK_F2, SDLK_F2, SDLK_F11}) == plain);
    CHECK(shown({SDLK_F2, SDLK_F2}) == plain);
    CHECK(shown({SDLK_F2}, 700) == 700);
}
