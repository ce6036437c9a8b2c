#include "player/window/desktop_window.h"

#include <SDL.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "player/canvas/style.h"
#include "player/inspector/layout.h"

namespace player {
namespace {

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
Area fitting_size(int display, const Shape& shape) {
    const auto [width, height, inspecting] = shape;
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

}  // namespace

// There is no sound, so SDL's audio is never touched.
DesktopWindow::Sdl::Sdl() {
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

DesktopWindow::Sdl::~Sdl() {
    SDL_Quit();
}

void DesktopWindow::Destroy::operator()(SDL_Window* window) const {
    SDL_DestroyWindow(window);
}

DesktopWindow::DesktopWindow(const Shape& shape)
    : given_(fitting_size(0, shape)), window_(open_window(given_)) {}

Area DesktopWindow::size() const {
    Area size;
    SDL_GetWindowSize(window_.get(), &size.width, &size.height);
    return size;
}

void DesktopWindow::note_size() {
    const Area now = size();
    user_sized_ = now.width != given_.width || now.height != given_.height;
}

void DesktopWindow::place(const Area& at) {
    SDL_SetWindowSize(window_.get(), at.width, at.height);
    SDL_SetWindowPosition(window_.get(), at.x, at.y);
}

void DesktopWindow::fit(const Shape& shape) {
    const bool was_due = std::exchange(due_, std::nullopt).has_value();
    if (enlarged(window_.get())) {
        due_ = shape;
        return;
    }
    // On the way back from being full the size may still be that.
    if (!was_due) note_size();
    if (user_sized_) return;
    const int display = display_of(window_.get());
    const int middle = static_cast<int>(SDL_WINDOWPOS_CENTERED_DISPLAY(static_cast<unsigned>(display)));
    given_ = fitting_size(display, shape);
    place({middle, middle, given_.width, given_.height});
}

// SDL leaves it to the window manager to enlarge the window and takes it for done. Where there is none, the
// window would stay as it was and show a corner of the picture; so it is given the display's size beforehand.
void DesktopWindow::toggle_full_screen() {
    SDL_Window* window = window_.get();
    if ((SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0) {
        SDL_SetWindowFullscreen(window, 0);
        if (windowed_) place(*windowed_);
        windowed_.reset();
        return;
    }
    if (!enlarged(window)) {
        note_size();
        const Area display = bounds_of(display_of(window));
        if (unframed(window) && display.width > 0) {
            windowed_ = size();
            SDL_GetWindowPosition(window, &windowed_->x, &windowed_->y);
            place(display);
        }
    }
    SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
}

bool DesktopWindow::seen() const {
    return (SDL_GetWindowFlags(window_.get()) & (SDL_WINDOW_HIDDEN | SDL_WINDOW_MINIMIZED)) == 0;
}

int DesktopWindow::panel_steps() const {
    return player::panel_steps(bounds_of(display_of(window_.get())), size());
}

void DesktopWindow::set_title(const std::string& title) {
    SDL_SetWindowTitle(window_.get(), title.c_str());
}

}  // namespace player
