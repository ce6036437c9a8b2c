#include "player/window/window.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <iostream>

#include "player/common/stop.h"
#include "player/window/panels.h"

namespace player {
namespace {

constexpr double seconds_between_looks = 0.5;  // at the files of the game
constexpr int showings_to_settle = 3;          // of panels whose sizes follow what they show

// Pads tell of every tremble of their sticks.
bool concerns_panels(const SDL_Event& event) {
    return event.type < SDL_JOYAXISMOTION || event.type >= SDL_CLIPBOARDUPDATE;
}

double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

Window::Window(const Options& options)
    : options_(options),
      window_({options.width, options.height, options.inspect}),
      canvas_(window_.sdl()),
      pacer_(canvas_.locked()),
      inspecting_(options.inspect) {
    load();
}

Window::~Window() = default;

// ---- Events

// While somebody types the events behind each key have to wait: a panel looks at the keys once a turn, and
// would miss one that has come up again.
void Window::take_events() {
    if (stop_signal() != 0) closing_ = true;
    SDL_Event event;
    for (bool go_on = true; go_on && SDL_PollEvent(&event) != 0;) {
        go_on = event.type != SDL_KEYDOWN || !canvas_.takes_keyboard();
        canvas_.tell(event);
        if (concerns_panels(event)) showings_due_ = showings_to_settle;
        if (event.type == SDL_QUIT) closing_ = true;
        if (event.type == SDL_KEYDOWN)
            take_key(event);
        else
            devices_.take_event(event);
    }
}

// Releases always reach the devices: a key that went down as one of the game's may come up with Alt held.
void Window::take_key(const SDL_Event& event) {
    const bool typing = canvas_.takes_keyboard();  // then Escape and Enter end the typing
    const Command command = command_of(event.key);
    if (command != Command::none) {
        if (!typing || command != Command::close) obey(command);
    } else if (!typing) {
        devices_.take_event(event);
    }
}

void Window::obey(Command command) {
    switch (command) {
        case Command::none:
            return;
        case Command::inspector:
            inspecting_ = !inspecting_;
            if (inspector_) inspector_->look();
            fit_window();
            return;
        case Command::help:
            keys_shown_ = !keys_shown_;
            return;
        case Command::pause:
            transport_.toggle_pause();
            return;
        case Command::step:
            transport_.step();
            return;
        case Command::reload:
            load();
            return;
        case Command::full_screen:
            window_.toggle_full_screen();
            return;
        case Command::close:
            closing_ = true;
            return;
    }
}

// ---- The game

void Window::load() {
    // The old game first: there is room for one engine only.
    inspector_.reset();
    session_.reset();
    changed_file_.reset();
    script_only_ = {};
    script_only_.note(options_.script);
    try {
        session_ = std::make_unique<Session>(options_);
        inspector_.emplace(session_->game.engine, seconds_now);
        transport_.loaded();
    } catch (const std::exception& error) {
        fail(error);
    }
}

void Window::fail(const std::exception& error) {
    transport_.fail(error.what());
    showings_due_ = showings_to_settle;
    std::cerr << error.what() << std::endl;
}

void Window::play_frame() {
    showings_due_ = std::max(showings_due_, 1);
    try {
        session_->game.keys.hold(devices_.take_keys());
        session_->play_frame();
        const int old_width = screen_.width, old_height = screen_.height;
        session_->game.engine.take_screenshot(screen_);
        if (screen_.width != old_width || screen_.height != old_height) fit_window();
        if (inspecting_) inspector_->look();
    } catch (const std::exception& error) {
        fail(error);
        return;
    }
    const bool last = session_->over(options_.frames);
    if (outputs_ != nullptr)
        for (const auto& output : *outputs_)
            if (output->wants(session_->game.frames_drawn, last))
                output->take(screen_, session_->game.frames_drawn);
    if (!last) return;
    closing_ = true;
    exit_status_ = session_->game.exit_status;
}

void Window::fit_window() {
    if (!screen_.pixels.empty()) window_.fit({screen_.width, screen_.height, inspecting_});
}

void Window::look_at_files(double now) {
    if (now < next_look_) return;
    next_look_ = now + seconds_between_looks;
    if (!changed_file_)
        changed_file_ = session_ ? session_->game.files_read.changed() : script_only_.changed();
}

// ---- What is seen

void Window::write_title() {
    std::string title = std::filesystem::path(options_.script).filename().string();
    if (transport_.failed())
        title += " - stopped by an error";
    else if (transport_.paused())
        title += " - paused";
    if (changed_file_)
        title +=
            " - " + std::filesystem::path(*changed_file_).filename().string() + " has changed: F5 loads it";
    if (title == title_) return;
    title_ = title;
    window_.set_title(title_);
}

void Window::show() {
    if (!window_.seen() || showings_due_ == 0) return;
    --showings_due_;
    ++showings_;
    const Area whole = canvas_.size();
    canvas_.begin(window_.panel_steps());
    const bool inspecting = inspecting_ && inspector_;
    std::string note;
    if (transport_.paused() && !transport_.failed())
        note = "paused at frame " + std::to_string(session_->game.frames_drawn) + " - F3 goes on, F4 steps";
    const Area note_at =
        note_place(note, inspecting ? lay_out_inspector(whole, canvas_.steps()).game : whole);
    if (inspecting)
        inspector_->draw(canvas_, screen_, note.empty() ? Area{} : note_at);
    else if (!screen_.pixels.empty())
        canvas_.lay(screen_, place_screen(screen_.width, screen_.height, whole).at);
    if (transport_.failed())
        show_error(transport_.error());
    else if (!note.empty())
        show_note(note, note_at);
    if (keys_shown_) show_keys();
    canvas_.finish();
}

// A game that nobody sees stands, unless its frames are written or counted.
bool Window::plays() const {
    const bool wanted = window_.seen() || options_.frames || (outputs_ != nullptr && !outputs_->empty());
    return wanted && !transport_.stands();
}

bool Window::turn(double now) {
    take_events();
    window_.fit_if_due();
    for (int due = pacer_.due(now); due > 0 && !closing_; --due)
        if (plays() && transport_.take_frame()) play_frame();
    look_at_files(now);
    write_title();
    show();
    return !closing_;
}

// Until the next turn. With nothing to play and nothing to show only an event, or a file, can change that.
void Window::rest(bool shown) {
    const auto delay = [](double seconds) {
        return static_cast<int>(std::ceil(1000 * std::max(0.0, seconds)));
    };
    const double now = seconds_now();
    if (!plays() && (showings_due_ == 0 || !window_.seen()))
        SDL_WaitEventTimeout(nullptr, delay(next_look_ - now));
    else if (!shown || !canvas_.locked())  // else the display has been waited for
        SDL_Delay(static_cast<Uint32>(delay(pacer_.wait(now))));
}

int Window::run() {
    for (int before = showings_; turn(seconds_now()); before = showings_) rest(showings_ != before);
    return exit_status_;
}

}  // namespace player
