#include "player/window/window.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "player/canvas/style.h"
#include "player/common/stop.h"
#include "player/window/panels.h"

namespace player {
namespace {

constexpr double seconds_between_looks = 0.5;  // at the files of the game
constexpr int showings_to_settle = 3;          // of panels whose sizes follow what they show

// The display that a window is on.
int display_of(SDL_Window* window) {
    return std::max(0, SDL_GetWindowDisplayIndex(window));
}

Area bounds_of(int display) {
    SDL_Rect bounds{};
    SDL_GetDisplayBounds(display, &bounds);
    return {bounds.x, bounds.y, bounds.w, bounds.h};
}

// As large as fits well on the desktop, the game's pixels as whole squares.
Area fitting_size(int display, int width, int height, bool inspecting) {
    SDL_Rect room{};
    if (SDL_GetDisplayUsableBounds(display, &room) != 0) return {0, 0, width, height};
    const Area most{0, 0, room.w * 9 / 10, room.h * 9 / 10};
    if (!inspecting) return place_screen(width, height, most).at;
    const int steps = panel_steps(bounds_of(display), most);
    const Area panels = inspected_size(width, height, 1, steps);
    const Placement placed = place_screen(
        width, height, {0, 0, most.width - panels.width + width, most.height - panels.height + height});
    return placed.shrunk ? most : inspected_size(width, height, placed.scale, steps);
}

SDL_Window* open_window(const Area& size) {
    SDL_Window* window = SDL_CreateWindow("", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, size.width,
                                          size.height, SDL_WINDOW_RESIZABLE);
    if (!window) throw std::runtime_error(std::string("no window can be opened: ") + SDL_GetError());
    SDL_SetWindowMinimumSize(window, least_window_width, least_window_height);
    return window;
}

Area size_of(SDL_Window* window) {
    Area size;
    SDL_GetWindowSize(window, &size.width, &size.height);
    return size;
}

// Full or maximal: how large it is, is not ours to say.
bool enlarged(SDL_Window* window) {
    return (SDL_GetWindowFlags(window) & (SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_MAXIMIZED)) != 0;
}

// Whether SDL knows of nobody who draws a frame around the window, as where no window manager runs.
bool unframed(SDL_Window* window) {
    int top = 0, left = 0, bottom = 0, right = 0;
    return SDL_GetWindowBordersSize(window, &top, &left, &bottom, &right) == 0 &&
           (top | left | bottom | right) == 0;
}

// Pads tell of every tremble of their sticks.
bool concerns_panels(const SDL_Event& event) {
    return event.type < SDL_JOYAXISMOTION || event.type >= SDL_CLIPBOARDUPDATE;
}

double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

// There is no sound, so SDL's audio is never touched.
Window::Sdl::Sdl() {
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");  // stop_signal() knows, also while a turn does not end
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_GAMECONTROLLER) != 0)
        throw std::runtime_error(std::string("no window can be opened: ") + SDL_GetError());
    // Without a display SDL falls back to drivers that show nothing. Whoever wants one of those says so.
    const std::string driver = SDL_GetCurrentVideoDriver();
    if ((driver != "offscreen" && driver != "dummy" && driver != "evdev") || std::getenv("SDL_VIDEODRIVER"))
        return;
    SDL_Quit();
    throw std::runtime_error("no window can be opened: there is no display");
}

Window::Sdl::~Sdl() {
    SDL_Quit();
}

void Window::Destroy::operator()(SDL_Window* window) const {
    SDL_DestroyWindow(window);
}

Window::Window(const Options& options)
    : options_(options),
      given_(fitting_size(0, options.width, options.height, options.inspect)),
      window_(open_window(given_)),
      inspecting_(options.inspect) {
    canvas_.emplace(window_.get());
    pacer_ = Pacer(canvas_->locked());
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
        go_on = event.type != SDL_KEYDOWN || !canvas_->takes_keyboard();
        canvas_->tell(event);
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
    const bool typing = canvas_->takes_keyboard();  // then Escape and Enter end the typing
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
            toggle_full_screen();
            return;
        case Command::close:
            closing_ = true;
            return;
    }
}

// SDL leaves it to the window manager to enlarge the window and takes it for done. Where there is none, the
// window would stay as it was and show a corner of the picture; so it is given the display's size beforehand.
void Window::toggle_full_screen() {
    SDL_Window* window = window_.get();
    if ((SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0) {
        SDL_SetWindowFullscreen(window, 0);
        if (windowed_) place_window(*windowed_);
        windowed_.reset();
        return;
    }
    if (!enlarged(window)) note_size();
    SDL_Rect display{};
    if (!enlarged(window) && unframed(window) && SDL_GetDisplayBounds(display_of(window), &display) == 0) {
        windowed_ = size_of(window);
        SDL_GetWindowPosition(window, &windowed_->x, &windowed_->y);
        place_window({display.x, display.y, display.w, display.h});
    }
    SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
}

void Window::place_window(const Area& at) {
    SDL_SetWindowSize(window_.get(), at.width, at.height);
    SDL_SetWindowPosition(window_.get(), at.x, at.y);
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
        screen_ = Picture(session_->game.engine.screenshot());
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

void Window::note_size() {
    const Area size = size_of(window_.get());
    user_sized_ = size.width != given_.width || size.height != given_.height;
}

// After a change of video mode, or of what is shown. A window that its user has made full or maximal stays as
// long as it is that, and one that its user has given a size keeps it.
void Window::fit_window() {
    SDL_Window* window = window_.get();
    if (screen_.pixels.empty()) return;
    const bool was_due = std::exchange(fit_due_, enlarged(window));
    if (fit_due_) return;
    if (!was_due) note_size();
    if (user_sized_) return;
    const int display = display_of(window);
    const int middle = static_cast<int>(SDL_WINDOWPOS_CENTERED_DISPLAY(static_cast<unsigned>(display)));
    given_ = fitting_size(display, screen_.width, screen_.height, inspecting_);
    place_window({middle, middle, given_.width, given_.height});
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
    SDL_SetWindowTitle(window_.get(), title_.c_str());
}

void Window::show() {
    if (!seen() || showings_due_ == 0) return;
    --showings_due_;
    ++showings_;
    const Area whole = canvas_->size();
    canvas_->begin(panel_steps(bounds_of(display_of(window_.get())), whole));
    const bool inspecting = inspecting_ && inspector_;
    std::string note;
    if (transport_.paused() && !transport_.failed())
        note = "paused at frame " + std::to_string(session_->game.frames_drawn) + " - F3 goes on, F4 steps";
    const Area note_at =
        note_place(note, inspecting ? lay_out_inspector(whole, canvas_->steps()).game : whole);
    if (inspecting)
        inspector_->draw(*canvas_, screen_, note.empty() ? Area{} : note_at);
    else if (!screen_.pixels.empty())
        canvas_->lay(screen_, place_screen(screen_.width, screen_.height, whole).at);
    if (transport_.failed())
        show_error(transport_.error());
    else if (!note.empty())
        show_note(note, note_at);
    if (keys_shown_) show_keys();
    canvas_->finish();
}

bool Window::seen() const {
    return (SDL_GetWindowFlags(window_.get()) & (SDL_WINDOW_HIDDEN | SDL_WINDOW_MINIMIZED)) == 0;
}

// A game that nobody sees stands, unless its frames are written or counted.
bool Window::plays() const {
    const bool wanted = seen() || options_.frames || (outputs_ != nullptr && !outputs_->empty());
    return wanted && !transport_.stands();
}

bool Window::turn(double now) {
    take_events();
    if (fit_due_) fit_window();
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
    if (!plays() && (showings_due_ == 0 || !seen()))
        SDL_WaitEventTimeout(nullptr, delay(next_look_ - now));
    else if (!shown || !canvas_->locked())  // else the display has been waited for
        SDL_Delay(static_cast<Uint32>(delay(pacer_.wait(now))));
}

int Window::run() {
    for (int before = showings_; turn(seconds_now()); before = showings_) rest(showings_ != before);
    return exit_status_;
}

}  // namespace player
