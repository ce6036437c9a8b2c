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
        options.script = folder_ / "game.lua";
        options.module = SCROLL2D_MODULE;
        options.width = 64;
        options.height = 48;
        options.seed = seed;
        window_ = std::make_unique<Window>(options);
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    }
    ~Played() { std::filesystem::remove_all(folder_); }

    void write(const std::string& script) const { std::ofstream(folder_ / "game.lua") << script; }
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
        SDL_Event event{.type = down ? SDL_KEYDOWN : SDL_KEYUP};
        event.key.keysym = {SDL_GetScancodeFromKey(key), key, static_cast<Uint16>(modifiers), 0};
        SDL_PushEvent(&event);
    }
    // Then so many turns.
    void tap(SDL_Keycode key, int count = 0, int modifiers = 0) {
        push(key, true, modifiers);
        push(key, false, modifiers);
        turns(count);
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
        local status = 0
        while true do
            if key("right") then status = status + 1 end
            if key("enter") then status = status + 10 end
            if key("f3") or key("escape") then error("a key of the window") end
            if key("q") then quit(status) end
            frame()
        end)");
    played.tap(SDLK_RIGHT, 2);
    played.push(SDLK_RIGHT, true);
    played.turns(5);
    played.push(SDLK_RIGHT, false);
    played.push(SDLK_RETURN, true);
    played.turns(1);
    played.push(SDLK_RETURN, false, KMOD_LALT);  // one of the game's, though Alt and Enter is the window's
    played.tap(SDLK_RETURN, 0, KMOD_LALT);
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F3, SDLK_F1}) played.tap(key);
    played.turns(1);
    CHECK(played.window().shows_keys());
    played.tap(SDLK_q);
    CHECK_FALSE(played.turn());
    CHECK(played.window().exit_status() == 16);
}

TEST_CASE("pause, single steps, loading again and closing") {
    Played played("while true do frame() end");
    played.turns(3);
    played.tap(SDLK_F3, 3);
    CHECK(played.frames() == 3);
    CHECK(played.window().title() == "game.lua - paused");
    played.tap(SDLK_F4, 3);
    CHECK(played.frames() == 4);
    played.tap(SDLK_F5, 3);
    CHECK(played.frames() == 1);
    played.tap(SDLK_F3, 1);
    CHECK(played.frames() == 2);
    played.push(SDLK_ESCAPE, true);
    CHECK_FALSE(played.turn());
    CHECK(played.window().exit_status() == 0);
}

TEST_CASE("a script's error is shown and printed, and the window waits for a better script") {
    std::ostringstream printed;
    std::streambuf* const before = std::cerr.rdbuf(printed.rdbuf());
    Played played("frame(2) broken()");
    played.turns(5);
    CHECK(played.transport().error().find("game.lua:1:") != std::string::npos);
    CHECK(printed.str() == played.transport().error() + "\n");
    CHECK(played.frames() == 2);
    played.write("syntax error");
    played.tap(SDLK_F5);
    for (const SDL_Keycode key : {SDLK_F3, SDLK_F4, SDLK_F2, SDLK_F1}) played.tap(key);
    played.turns(40);
    CHECK(played.window().session() == nullptr);
    CHECK(printed.str().find("syntax error near") != std::string::npos);
    played.write("while true do frame() end");
    played.turns(40);
    CHECK(played.window().title() == "game.lua - stopped by an error - game.lua has changed: F5 loads it");
    played.tap(SDLK_F5, 5);
    CHECK(played.frames() == 1);  // the pause of before holds its first frame
    CHECK(played.window().title() == "game.lua - paused");
    std::cerr.rdbuf(before);
    SDL_Event button{.type = SDL_QUIT};
    SDL_PushEvent(&button);
    CHECK_FALSE(played.turn());
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
                function() scroll[0].x0, scroll[5].y1, scroll[0].region1 = any(), any(), any() end,
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
        for (int i = 0; i < 100; ++i) {
            if (i % 17 == 0) played.tap(SDLK_F2);
            if (i % 11 == 0) played.tap(SDLK_F4);
            if (i % 11 == 5) played.tap(SDLK_F3);
            played.turns(1);
        }
        CAPTURE(played.transport().error());
        CHECK(played.transport().error().find("the end") != std::string::npos);
        played.write("syntax error");
        for (const SDL_Keycode key : {SDLK_F2, SDLK_F5, SDLK_F2, SDLK_F2}) played.tap(key, 1);
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
    played.tap(SDLK_F3, 1);
    CHECK(after_turns() > 0);  // until the panels have settled
    CHECK(after_turns() == 0);
    played.tap(SDLK_F1);
    CHECK(after_turns() > 0);
    played.tap(SDLK_F3, 1);
    SDL_HideWindow(played.sdl());
    const int frames = played.frames();
    CHECK(after_turns() == 0);
    CHECK(played.frames() == frames);
    SDL_ShowWindow(played.sdl());
    CHECK(after_turns() == 10);
    CHECK(played.frames() == frames + 10);
    played.write("frame(5) broken()");
    played.tap(SDLK_F5);
    CHECK(after_turns() == 5 + 3);  // the message has a size of its own
}

TEST_CASE("the window fits what it shows, but for the time of full screen, and keeps a size of its user's") {
    const auto shown = [](const std::vector<SDL_Keycode>& keys, int width = 0) {
        Played played("while true do frame() end");
        played.turn();
        if (width > 0) SDL_SetWindowSize(played.sdl(), width, 500);
        for (const SDL_Keycode key : keys) played.tap(key, 1);
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
