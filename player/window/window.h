// The game in a window: played sixty times a second, steered by keyboard and pads, paused, loaded again.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "player/canvas/canvas.h"
#include "player/common/pacer.h"
#include "player/inspector/inspector.h"
#include "player/output/output.h"
#include "player/script/session.h"
#include "player/window/commands.h"
#include "player/window/desktop_window.h"
#include "player/window/devices.h"
#include "player/window/transport.h"

namespace player {

class Window {
  public:
    // Opens the window and loads the script; an error of a script is shown, and printed on standard error,
    // never thrown. Errors: std::runtime_error with SDL's reason when no window can be opened.
    explicit Window(const Options& options);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window();

    // Where the pictures of the frames to come go, besides the window, until run() has returned.
    void deliver_to(const Outputs& outputs) { outputs_ = &outputs; }

    // Takes the events that wait, plays the frames that are due at `now` (seconds of a steady clock), and
    // shows what is new. False once the window is to be closed.
    bool turn(double now);
    // turn() until that, in real time. Returns the exit status.
    int run();

    // ---- For whoever watches

    [[nodiscard]] const Transport& transport() const { return transport_; }
    [[nodiscard]] Session* session() { return session_.get(); }  // null: the script could not be loaded
    [[nodiscard]] const std::string& title() const { return title_; }
    [[nodiscard]] bool shows_keys() const { return keys_shown_; }
    [[nodiscard]] bool inspects() const { return inspecting_; }
    [[nodiscard]] int exit_status() const { return exit_status_; }
    [[nodiscard]] int showings() const { return showings_; }  // how often its picture was drawn

  private:
    void take_events();
    void take_key(const SDL_Event& event);
    void obey(Command command);
    void load();
    void fail(const std::exception& error);
    [[nodiscard]] bool plays() const;
    void play_frame();
    void show();
    void rest(bool shown);
    void fit_window();
    void look_at_files(double now);
    void write_title();

    Options options_;
    const Outputs* outputs_ = nullptr;
    DesktopWindow window_;
    Canvas canvas_;
    Pacer pacer_;
    Devices devices_;
    Transport transport_;
    std::unique_ptr<Session> session_;
    std::optional<Inspector> inspector_;  // of the session, shown or not
    bool inspecting_;
    Picture screen_;         // what the game drew last; stays when the game is gone
    FileWatch script_only_;  // what to watch while no session does
    std::optional<std::string> changed_file_;
    double next_look_ = 0;
    std::string title_;
    bool keys_shown_ = false;
    int showings_due_ = 1;
    int showings_ = 0;
    bool closing_ = false;
    int exit_status_ = 0;
};

}  // namespace player
