// The module and the model side by side: whatever is asked of one is asked of the other, and after every step
// all that can be seen of the module is compared: results, errors, script fields, entries of blit lists,
// processes, services, memory held, and every pixel of the screen and of every map.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/engine.h"
#include "tests/model/inside.h"
#include "tests/model/interruptions.h"
#include "tests/model/model.h"
#include "tests/module/allocation.h"

namespace model {

// Says what differs, and what was called before.
class Mismatch : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Fills a bitmap with pixels of which many are transparent, fully opaque, or nearly so.
void fill_with_noise(host::Bitmap& bitmap, std::uint32_t seed);

// The module to test: $SCROLL2D_MODULE, or else the one that was built.
std::filesystem::path module_path(const char* built);

class Lockstep {
  public:
    tests::ModuleAllocator memory;
    host::Engine engine;
    Model model;

    // Of a module that was linked for tests the records are compared too, and `widest` and `asking` choose
    // among its loops.
    Lockstep(const host::Options& options, const std::filesystem::path& module,
             scroll2d::VectorUnit widest = scroll2d::any_unit,
             scroll2d::Asking asking = scroll2d::Asking::where_calm);

    // ---- The module's doings. Each throws Mismatch, after writing pictures where pixels differ.
    std::int32_t call(const std::string& function, std::initializer_list<std::int32_t> arguments);
    void frame();
    // By an entry of the test's own, of any number, whether or not a frame would show the scroll.
    void draw_unscheduled(std::int32_t scroll, std::int32_t z);
    // `meanwhile` happens once the depth is new, before the module hears of it.
    void change_video_mode(const host::VideoMode& mode, bool reset, const std::function<void()>& meanwhile);
    void begin_anew();  // the init hook once more
    void stop_service(std::int32_t scroll);
    void stop_all_service();
    void ask_services(std::int32_t n, std::int32_t mask, __RVKRegion__ world);

    // ---- What scripts and hosts do between. Bitmaps that a test has changed must be looked at anew.
    void write(int scroll, Field field, std::int32_t value);
    void nudge(int scroll, Field field, std::int32_t by);  // not beyond the edge of the numbers
    void bitmaps_changed() { model.look_at_bitmaps(); }
    // In each later step the n-th allocation fails, counted from 1, and the ones after it with `for_good`. 0:
    // none.
    void fail_allocations(int nth, bool for_good);
    // From now on the host stops scrolls by chance from within a slot. The model knows
    // nothing of that: what is held from here on is that each record is sound by itself, that a call for one
    // scroll leaves all others as they were, or stopped, and that nothing is leaked. Of a module that shows
    // its records alone.
    void interrupt(const InterruptedSlot& slot, std::uint32_t seed);
    // Unloads the module and looks for what it left behind. The end of a game.
    void finish();
    void note(std::string what);

  private:
    using Doing = std::function<std::int32_t()>;
    struct Named {
        std::int32_t scroll = -1;  // the one that a step may write; -1: any
        bool starts = false;       // it may go on after a stop
    };
    std::int32_t step(Named named, const Doing& actual, const Doing& expected);
    std::int32_t interrupted_step(Named named, const Doing& actual);
    void stop_by_chance();
    void check_sound();
    void check_interrupted(int n, scroll2d::ScrollRecord before, const std::int32_t* fields, Named named);
    void begin_step();
    void check();
    void check_bitmap(const std::string& name, host::Bitmap& bitmap);
    void check_records();
    void check_processes();
    void check_sprite_passes();
    void draw_entry(__RVKBlit2D__& entry);
    static void write_pictures(const host::Bitmap& actual, const std::vector<std::byte>& expected);
    [[noreturn]] void differ(const std::string& what) const;
    template <class Value>
    void same(const Value& expected, const Value& actual, const std::string& what) const;
    std::span<std::int32_t> script_fields();

    const Inside* inside_ = nullptr;  // of a module that shows it
    std::shared_ptr<void> interruption_;
    std::mt19937 chance_;
    int stopping_ = 0;  // stops within stops
    int failing_ = 0;
    bool failing_for_good_ = false;
    std::vector<std::string> notes_;
    std::uint32_t checks_ = 0;
};

}  // namespace model
