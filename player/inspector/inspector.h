// The inspector: what the scrolls of a running game are made of, drawn over and beside it.
#pragma once

#include <optional>

#include "player/inspector/parts.h"
#include "player/inspector/side.h"

namespace player {

class Inspector {
  public:
    // Watches from now on; to be made before the script's first turn, since it learns of the scrolls' maps
    // when they start. With a clock (seconds) it times their drawing.
    explicit Inspector(host::Engine& engine, std::function<double()> clock = {});

    // After a frame has been drawn.
    void look();
    // Into the canvas's frame that has begun: the screen as it was at the last look, marks, panels. A field
    // that is moved by hand is written into the script's data. What is going to be drawn over `covered` hides
    // no figures.
    void draw(Canvas& canvas, const Picture& screen, const Area& covered = {});

    [[nodiscard]] const Survey& survey() const { return survey_; }

  private:
    host::Engine& engine_;
    bool timed_;
    Surveyor surveyor_;
    Survey survey_;
    Shown shown_;
    SidePanel side_;
    int looks_ = 0;
    bool renew_maps_ = true;
};

// Pictures of a run without a window: the game and the inspector, the same for the same script.
class InspectedPictures {
  public:
    // The game is enlarged `scale` times; 0: so that it can be read.
    InspectedPictures(host::Engine& engine, int scale) : inspector_(engine), scale_(scale) {}

    // Of the frame just drawn; to be called for every frame.
    Picture take(const Picture& screen);

  private:
    Inspector inspector_;
    int scale_;
    std::optional<Canvas> canvas_;
    Area size_;
};

}  // namespace player
