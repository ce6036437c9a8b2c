// The right side of the inspector: figures, fields and times of each scroll.
#pragma once

#include "player/common/placement.h"
#include "player/inspector/fields.h"
#include "player/inspector/surveyor.h"

namespace player {

class SidePanel {
  public:
    // Into the present frame of ImGui. `timed`: the surveyor has a clock.
    void draw(const Area& area, const Survey& survey, host::Engine& engine, const Surveyor& surveyor,
              bool timed);

  private:
    void draw_scroll(const ScrollSurvey& scroll, bool open, std::size_t sprites_listed, host::Engine& engine,
                     const std::vector<float>& times);

    Fields fields_;
};

}  // namespace player
