// The window, by SDL's driver that needs no display, with events pushed as SDL would.
#include "player/window/window.h"

#include <SDL.h>
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

using namespace player;

namespace {

// A script in a folder of its own, played by a clock of its own.
class Played {
  public:
    explicit Played(const std::string& script, unsigned seed = 1)
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
        options.seed = seed;
        window_ = std::make_unique<Window>(options);
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    }
    ~Played() { std::filesystem::remove_all(folder_); }

    void write(const std::string& script) const { std::ofstream(path()) << script; }
    [[nodiscard]] std::string path() const { return folder_ / "game.lua"; }
    Window& window() { return *window_; }
    [[nodiscard]] const Transport& transport() const { return window_->transport(); }
    [[nodiscard]] SDL_Window* sdl() const { return SDL_GetWindowFromID(1); }  // the first since SDL began

    bool turn() {
        now_ += 1 / frames_per_second;
        return window_->turn(now_);
    }
    void turns(int count) {
        for (int i = 0; i < count; ++i) REQUIRE(turn());
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

// What is printed while it lives.
class Printed {
  public:
    Printed() : before_(std::cerr.rdbuf(text_.rdbuf())) {}
    ~Printed() { std::cerr.rdbuf(before_); }
    [[nodiscard]] std::string text() const { return text_.str(); }

  private:
    std::ostringstream text_;
    std::streambuf* before_;
};

}  // namespace

TEST_CASE("the script reads the keyboard, and the window's own keys do not reach it") {
    Played played(R"(
        new_map(1, 1, 1, 1, "#ffffff")
        while true do
            if key("right") then process{file = 1, graph = 1} end
            if key("f3") or key("escape") then error("a key of the window") end
            frame()
        end)");
    played.turn();
    const auto count = [&] { return played.window().session()->game.engine.processes().count(); };
    const auto before = count();
    played.tap(SDLK_RIGHT);
    played.turns(2);
    CHECK(count() == before + 1);
    played.push(SDLK_RIGHT, true);
    played.turns(5);
    CHECK(count() == before + 6);
    played.push(SDLK_RIGHT, false);
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F3, SDLK_F1}) played.tap(key);
    played.turn();
    CHECK(played.transport().error().empty());
    CHECK(played.window().shows_keys());
    CHECK(count() == before + 6);
    CHECK(played.frames() == 9);
}

TEST_CASE("a key that comes up with Alt held is up, and Alt with Enter is the window's") {
    Played played(
        "frame() assert(key('enter')) frame() assert(not key('enter')) frame() assert(not key('enter')) "
        "quit(3)");
    played.push(SDLK_RETURN, true);
    played.turns(2);
    played.push(SDLK_RETURN, false, KMOD_LALT);
    played.turn();
    played.tap(SDLK_RETURN, KMOD_LALT);
    while (played.turn()) {
    }
    CHECK(played.window().exit_status() == 3);
}

TEST_CASE("pause and single steps, also of a game that is loaded meanwhile") {
    Played played("while true do frame() end");
    played.turns(3);
    played.tap(SDLK_F3);
    played.turns(3);
    CHECK(played.frames() == 3);
    CHECK(played.window().title() == "game.lua - paused");
    played.tap(SDLK_F4);
    played.turns(3);
    CHECK(played.frames() == 4);
    played.tap(SDLK_F5);
    played.turns(3);
    CHECK(played.frames() == 1);
    played.tap(SDLK_F3);
    played.turns(1);
    CHECK(played.frames() == 2);
}

TEST_CASE("a script's error is shown and printed, and the window waits for a better script") {
    const Printed printed;
    Played played("frame(2) broken()");
    played.turns(5);
    CHECK(played.transport().error().find("game.lua:1:") != std::string::npos);
    CHECK(printed.text() == played.transport().error() + "\n");
    CHECK(played.frames() == 2);
    played.write("syntax error");
    played.tap(SDLK_F5);
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F4, SDLK_F2, SDLK_F1}) played.tap(key);
    played.turns(40);
    CHECK(played.window().session() == nullptr);
    CHECK(played.transport().failed());
    CHECK(printed.text().find("syntax error near") != std::string::npos);
    played.write("while true do frame() end");
    played.turns(40);
    CHECK(played.window().title() == "game.lua - stopped by an error - game.lua has changed: F5 loads it");
    played.tap(SDLK_F5);
    played.turns(5);
    CHECK(played.frames() == 1);  // the pause of before holds its first frame
    CHECK(played.window().title() == "game.lua - paused");
}

TEST_CASE("the window closes by its button, by Escape, and when the game quits with its status") {
    for (const bool button : {true, false}) {
        Played played("while true do frame() end");
        CHECK(played.turn());
        SDL_Event quit{};
        quit.type = SDL_QUIT;
        button ? static_cast<void>(SDL_PushEvent(&quit)) : played.push(SDLK_ESCAPE, true);
        CHECK_FALSE(played.turn());
        CHECK(played.window().exit_status() == 0);
    }
    Played played("frame(3) quit(7)");
    played.turns(3);
    CHECK_FALSE(played.turn());
    CHECK(played.window().exit_status() == 7);
}

TEST_CASE(
    "the inspector comes and goes at any moment of a game, whatever that takes away, and of its errors") {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        Played played(R"(
            for graph = 10, 12 do new_map(1, graph, 50 * graph - 450, 80, "#336699") end
            define_region(1, 5, 5, 40, 30)
            local hero = process{ctype = c_scroll, file = 1, graph = 12, x = 50, y = 50}
            scroll_start(0, 1, 10, 11, 1, 5, math.random(0, 3))
            scroll_start(5, 1, 11, 10, 0, 0, scroll_layers_key)
            scroll[0].camera = hero
            local function any() return math.random(-2^31, 2^31 - 1) end
            local changes = {
                function() hero.x, hero.z = any(), any() end,
                function() scroll[0].x0, scroll[5].y1, scroll[5].z = any(), any(), any() end,
                function() scroll[0].region1, scroll[0].region2 = any(), math.random(-1, 99) end,
                function() define_region(1, any() // 2^20, any() // 2^20, math.random(99), math.random(99)) end,
                function() scroll_set_destination(all_scroll, 1, 12, 0) end,
                function() set_mode(math.random(200), math.random(100), 4 << math.random(3)) end,
                function() unload_map(1, math.random(10, 11)) end,
                function() kill(hero) end,
                function() scroll_stop(math.random(0, 1) * 5) end}
            for i = 1, 40 do
                pcall(changes[math.random(math.min(i, #changes))])
                frame()
            end
            error("the end"))",
                      seed);
        played.tap(SDLK_F2);
        for (int i = 0; i < 100; ++i) {
            if (i % 17 == 0) played.tap(SDLK_F2);
            if (i % 11 == 0) played.tap(SDLK_F4);
            if (i % 11 == 5) played.tap(SDLK_F3);
            played.turn();
        }
        CAPTURE(played.transport().error());
        CHECK(played.transport().error().find("the end") != std::string::npos);
        played.write("syntax error");
        for (const SDL_Keycode key : {SDLK_F2, SDLK_F5, SDLK_F2, SDLK_F2}) {
            played.tap(key);
            played.turns(1);
        }
        CHECK(played.window().session() == nullptr);
    }
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
