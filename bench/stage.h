// The stage: our host engine with the module loaded from its file, a screen of the view's size and the maps
// of the scenes; and a scroll on it whose draw callback can be called again and again.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

#include "bench/pictures.h"
#include "bench/scene.h"
#include "host/engine.h"

namespace bench {

// One lives at a time, like the engine in it.
class Stage {
  public:
    // A screen of `view` at `bits_per_pixel` over maps made of `pictures`, without a module.
    Stage(Size view, std::int32_t bits_per_pixel, const Pictures& pictures);

    // Loads a module, in place of the one that was there. No show may run.
    // Errors: host::Error for a module that cannot be loaded.
    void load(const std::filesystem::path& module);
    // The same with one that lets tests look inside, told to ask no groups of pixels for simple cases.
    void load_straight(const std::filesystem::path& opened_module);

    [[nodiscard]] host::Engine& engine() { return engine_; }
    [[nodiscard]] Size view() const { return view_; }
    [[nodiscard]] std::int32_t bits_per_pixel() const { return bits_per_pixel_; }
    [[nodiscard]] std::int32_t pitch() const { return pitch_; }  // bytes a screen row
    [[nodiscard]] std::span<std::byte> screen() { return engine_.screen().bytes(); }

    // The maps of a variant's planes. Opaque planes without alpha show the cover picture.
    [[nodiscard]] host::Map& front_map(const Variant& variant);
    [[nodiscard]] host::Map& back_map(const Variant& variant);
    [[nodiscard]] static std::int32_t front_graph(const Variant& variant);
    [[nodiscard]] static std::int32_t back_graph(const Variant& variant);

    // Adds a process to the scrolls' coordinates, with a small graphic of its own.
    void add_process(std::int32_t x, std::int32_t y);

    // A picture for the screen to hold before a scroll is drawn over it.
    void lay_backdrop();

    // Calls a script function. Errors: host::Error when it fails.
    void call(std::string_view function, std::initializer_list<std::int32_t> arguments);

  private:
    host::Engine engine_;
    Size view_;
    std::int32_t bits_per_pixel_;
    std::int32_t pitch_;
};

// A scroll running over the whole screen, its entry made by the module's frame hook.
class Show {
  public:
    Show(Stage& stage, const Variant& variant, std::int32_t scroll = 0);
    ~Show();
    Show(const Show&) = delete;
    Show& operator=(const Show&) = delete;

    // Aims the scroll one step of the motion further and calls the draw callback.
    void draw(Position step) {
        aim(step);
        blit_(entry_);
    }
    // Fills the buffers such that their rings begin in the middle, with `at` in the view's top left corner.
    void go(Position at);

    // Aims likewise and moves the scroll by a script call, drawing nothing.
    void move(Position step) {
        aim(step);
        stage_.engine().call("scroll_move", {scroll_});
    }

    // Fills the buffers anew where the scroll stands, by a script call.
    void refill() { stage_.engine().call("scroll_refresh", {scroll_}); }

    [[nodiscard]] Position front() const { return {*x0_, *y0_}; }
    [[nodiscard]] Position back() const { return {*x1_, *y1_}; }

  private:
    void aim(Position step) {
        *x0_ += step.x;
        *y0_ += step.y;
        *x1_ = *x0_ >> 1;
        *y1_ = *y0_ >> 1;
    }

    Stage& stage_;
    std::int32_t scroll_;
    std::int32_t *x0_, *y0_, *x1_, *y1_;  // in the script globals, which stay in place during a show
    std::int32_t (*blit_)(__RVKBlit2D__*);
    __RVKBlit2D__* entry_;
};

}  // namespace bench
