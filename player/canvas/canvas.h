// Where finished pictures of the player are put together: the game's screen, and panels over and beside it.
#pragma once

#include <memory>

#include "player/common/picture.h"
#include "player/common/placement.h"

struct SDL_Window;
union SDL_Event;

namespace player {

// An SDL renderer with Dear ImGui on it, of a window or of a picture in memory: both draw the same way, so
// what a test or a recording shows is what the window shows. Only one lives at a time.
class Canvas {
  public:
    // Of a window, as large as that is at each frame. `locked` is then whether showing waits for a display of
    // about 60 Hz. Errors of both: std::runtime_error with SDL's reason.
    explicit Canvas(SDL_Window* window);
    // Of a picture in memory, which no display and no clock has a part in.
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] bool locked() const { return locked_; }
    [[nodiscard]] Area size() const;  // its place is (0, 0)
    [[nodiscard]] int steps() const { return steps_; }

    // Tells the panels of the mouse and the keyboard.
    void tell(const SDL_Event& event);
    // Whether a panel has the keyboard or the mouse to itself, such as while a number is typed.
    [[nodiscard]] bool takes_keyboard() const;

    // One picture: begin, then in any order panels of ImGui and one screen, then finish. The panels are
    // `steps` times as large as usual.
    void begin(int steps = 1);
    void lay(const Picture& screen, const Area& at);
    void finish();

    // Pictures for panels to show, by numbers of the caller's choice.
    [[nodiscard]] bool has_texture(int number, int width, int height) const;
    void keep_texture(int number, const Picture& picture);
    [[nodiscard]] void* texture(int number) const;

    // What was drawn last, of a canvas in memory.
    [[nodiscard]] Picture picture() const;

  private:
    struct Parts;
    void start_panels();

    std::unique_ptr<Parts> parts_;
    bool locked_ = false;
    int steps_ = 1;
};

}  // namespace player
