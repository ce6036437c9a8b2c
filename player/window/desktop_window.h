// The window on the desktop: its size, full screen, whether somebody sees it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "player/common/placement.h"

struct SDL_Window;

namespace player {

// What a window is to show: a screen of this size, with the inspector around it or alone.
struct Shape {
    int width = 1;  // pixels of the game
    int height = 1;
    bool inspecting = false;
};

class DesktopWindow {
  public:
    // Starts SDL and opens a window that fits. Errors: std::runtime_error with SDL's reason when no window
    // can be opened, or there is no display.
    explicit DesktopWindow(const Shape& shape);

    [[nodiscard]] SDL_Window* sdl() const { return window_.get(); }

    // After a change of video mode, or of what is shown. A window that its user has made full or maximal
    // stays as long as it is that, and one that its user has given a size keeps it.
    void fit(const Shape& shape);
    // Does what fit() had to leave until the window is neither full nor maximal; at every turn.
    void fit_if_due() {
        if (due_) fit(*due_);
    }
    void toggle_full_screen();

    [[nodiscard]] bool seen() const;
    // How many times as large as usual panels are to be in it.
    [[nodiscard]] int panel_steps() const;
    void set_title(const std::string& title);

  private:
    struct Sdl {
        Sdl();
        Sdl(const Sdl&) = delete;
        Sdl& operator=(const Sdl&) = delete;
        ~Sdl();
    };
    struct Destroy {
        void operator()(SDL_Window* window) const;
    };

    [[nodiscard]] Area size() const;
    void note_size();
    void place(const Area& at);

    Sdl sdl_;
    Area given_;  // the size that the window was given last, but for being full
    std::unique_ptr<SDL_Window, Destroy> window_;
    bool user_sized_ = false;       // has a size that it was not given, when last neither full nor maximal
    std::optional<Shape> due_;      // what to fit once it is neither again
    std::optional<Area> windowed_;  // where a window was that had to be enlarged to be full
};

}  // namespace player
