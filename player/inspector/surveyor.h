// Finds out how the scrolls of an engine stand, from outside, as any tool could: by the module's services,
// the script's fields, the calls that scripts made and the entries that were drawn.
#pragma once

#include <array>
#include <functional>
#include <map>

#include "host/engine.h"
#include "module/contract/script_numbers.h"
#include "player/inspector/survey.h"

namespace player {

class Surveyor final : public host::Observer {
  public:
    // Watches the engine as long as it lives. `clock` (seconds) times the drawing of each scroll; without one
    // nothing is timed.
    explicit Surveyor(host::Engine& engine, std::function<double()> clock = {});
    Surveyor(const Surveyor&) = delete;
    Surveyor& operator=(const Surveyor&) = delete;
    ~Surveyor() override;

    // How everything stands now, between two frames.
    [[nodiscard]] Survey survey();

    // Milliseconds that the last drawings of a scroll took, the oldest first; empty without a clock.
    [[nodiscard]] const std::vector<float>& times(int scroll) const;

    void before_drawing(const __RVKBlit2D__& entry) override;
    void after_drawing(const __RVKBlit2D__& entry) override;
    void sorted(const host::BlitQueue& list) override;
    void called(std::string_view name, std::span<const std::int32_t> arguments, std::int32_t result) override;

  private:
    // What the script said when it started or aimed a scroll; the module does not tell it again.
    struct Scroll {
        std::int32_t flags = 0;
        std::int32_t file = 0;
        std::array<std::int32_t, 2> graphs{};  // the second 0: one plane
        std::int32_t destination_file = 0;
        std::int32_t destination_graph = 0;
        Rect view;  // as last scheduled
        bool drawn = false;
        std::vector<SpriteSurvey> sprites;
        std::optional<std::size_t> plane_place;
        std::vector<float> times;
    };

    void take_maps(int number);
    void schedule();
    [[nodiscard]] bool is_scroll(const __RVKBlit2D__& entry) const;
    [[nodiscard]] bool is_sprite(const __RVKBlit2D__& entry) const;
    void survey_scroll(int number, ScrollSurvey& result);
    [[nodiscard]] PlaneSurvey survey_plane(const Scroll& scroll, int plane, Point position) const;
    [[nodiscard]] std::optional<CameraSurvey> survey_camera(int number, Point offset) const;
    [[nodiscard]] std::optional<RegionSurvey> survey_region(std::int32_t region,
                                                            const Rect& destination) const;
    [[nodiscard]] std::vector<SpriteSurvey> survey_sprites(const host::BlitQueue& list) const;
    [[nodiscard]] std::optional<std::size_t> place_of_plane(const host::BlitQueue& list) const;
    [[nodiscard]] SpriteSurvey survey_sprite(const __RVKBlit2D__& entry) const;
    [[nodiscard]] Rect destination_of(const Scroll& scroll) const;

    host::Engine& engine_;
    std::function<double()> clock_;
    std::array<Scroll, scroll2d::scroll_count> scrolls_;
    std::vector<int> order_;
    std::vector<SpriteSurvey> screen_sprites_;
    int drawing_ = -1;  // the scroll whose turn it is, -1: none
    double began_ = 0;
};

}  // namespace player
