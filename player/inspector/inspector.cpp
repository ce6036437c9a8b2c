#include "player/inspector/inspector.h"

#include <utility>

namespace player {
namespace {

constexpr int looks_between_maps = 30;  // scripts may draw into maps; half a second behind is soon enough

}  // namespace

Inspector::Inspector(host::Engine& engine, std::function<double()> clock)
    : engine_(engine), timed_(static_cast<bool>(clock)), surveyor_(engine, std::move(clock)) {}

void Inspector::look() {
    survey_ = surveyor_.survey();
    if (looks_++ % looks_between_maps == 0) renew_maps_ = true;
}

void Inspector::draw(Canvas& canvas, const Picture& screen, const Area& covered) {
    const InspectorLayout layout = lay_out_inspector(canvas.size(), canvas.steps());
    if (!screen.pixels.empty()) {
        const Placement placed = place_screen(screen.width, screen.height, layout.game);
        canvas.lay(screen, placed.at);
        if (survey_.screen_width == screen.width && survey_.screen_height == screen.height)
            draw_overlay(survey_, placed, shown_, covered);
    }
    draw_legend(layout.legend, shown_);
    draw_minimaps(layout.maps, survey_, engine_, canvas, renew_maps_);
    side_.draw(layout.side, survey_, engine_, surveyor_, timed_);
    renew_maps_ = false;
}

Picture InspectedPictures::take(const Picture& screen) {
    inspector_.look();
    const int scale = scale_ != 0 ? scale_ : readable_scale(screen.width);
    const Area game{0, 0, scale * screen.width, scale * screen.height};
    const int steps = panel_steps(game, game);
    const Area size = inspected_size(screen.width, screen.height, scale, steps);
    if (!canvas_ || size.width != size_.width || size.height != size_.height) {
        canvas_.reset();
        canvas_.emplace(size.width, size.height);
        size_ = size;
    }
    canvas_->begin(steps);
    inspector_.draw(*canvas_, screen);
    canvas_->finish();
    return canvas_->picture();
}

}  // namespace player
