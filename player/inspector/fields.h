// The fifteen fields of a scroll, to be read and to be changed by hand.
#pragma once

#include <array>

#include "host/engine.h"
#include "module/contract/script_numbers.h"
#include "player/inspector/survey.h"

namespace player {

class Fields {
  public:
    // Into the present window of ImGui. What is changed is changed in the script's data: a number that is
    // dragged at once, one that is typed at Enter.
    void draw(const ScrollSurvey& scroll, host::Engine& engine);
    // Forgets what was let go of in scrolls that do not run any more.
    void keep_running(const Survey& survey);

  private:
    void draw_field(const char* name, std::int32_t& field, const ScrollSurvey& scroll, host::Engine& engine,
                    int width);
    void draw_camera(std::int32_t& field, const ScrollSurvey& scroll, host::Engine& engine, int width);
    void draw_number(std::int32_t& field, bool opacity);

    std::array<std::int32_t, scroll2d::scroll_count> let_go_{};  // cameras, 0: none
    std::int32_t typed_ = 0;                                     // so far, in the field that is being typed
};

}  // namespace player
