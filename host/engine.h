// A small host engine without a window: the least that makes the scroll module run as it would in the wild.
//
// It owns every record of module/contract/host_records.h that is not the module's, loads the module by path
// as a stranger would, and draws frames into a screen bitmap. It links nothing of the module.
//
//     host::Engine engine({.width = 320, .height = 200, .bits_per_pixel = 32});
//     engine.load("build/RVK_mod_scroll2D.so");
//     engine.files().create_map(1, 10, picture, engine.palette(), false);
//     engine.call("scroll_start", {0, 1, 10, 0, 0, 0});
//     engine.global("scroll", 0, "x0") = 40;
//     engine.frame();
//     host::Image shot = engine.screenshot();
//
// What the module did that it must not do is recorded, never thrown: see faults() and untouched(). Errors
// that the module raised on behalf of a script: see errors(). Misuse by the caller throws host::Error.
// Threads: one.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/bitmap.h"
#include "host/blit_lists.h"
#include "host/depth.h"
#include "host/error.h"
#include "host/files.h"
#include "host/memory.h"
#include "host/observer.h"
#include "host/patterned.h"
#include "host/processes.h"
#include "host/regions.h"
#include "host/script_functions.h"
#include "host/script_globals.h"
#include "host/sprites.h"

namespace host {

class ModuleLibrary;

struct VideoMode {
    std::int32_t width = 320;  // pixels, 1 or more
    std::int32_t height = 200;
    std::int32_t bits_per_pixel = 32;  // 8, 16 or 32; any other is told to the module and drawn as 8
};

struct Options {
    std::int32_t width = 320;  // of the screen, in pixels
    std::int32_t height = 200;
    std::int32_t bits_per_pixel = 32;
    std::int32_t file_slots = 64;           // FileCount()
    std::int32_t region_slots = 32;         // RegionCount()
    std::int32_t system_graph_count = 256;  // SystemGraphCount(): graph limit of file 0
    Fence fence = Fence::none;  // for map pixels, the screen, the region table and the script globals
};

// How a change of video mode goes about it.
struct ModeChange {
    bool reset = false;  // the module sees reset_flag 1 during its update hook, and stops every scroll
    bool keep_old_screen = false;  // the old screen bitmap stays allocated until the next change
    bool convert_maps = false;     // Files::convert() to the new depth before the hook
    // Runs when screen and depth are new, before the hook: reload maps here.
    std::function<void()> before_update;
};

// The module's lifecycle hooks by id.
enum class Hook : std::int32_t { init = 1, frame = 2, update = 3, release = 4 };

class Engine {
  public:
    // Errors: Error while another Engine lives, or for an option out of range.
    explicit Engine(const Options& options = {});
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine();  // unload()

    // ---- Module

    // Opens the module, checks its dependencies, lets it register and runs its init hook. Errors: Error for a
    // missing file, symbol or dependency, for a slot that is null, by its name, for tables or declarations
    // that make no sense, and for faults during init.
    void load(const std::filesystem::path& path);
    // Runs the release hook and closes the module. Constants, functions and globals go with it.
    void unload();
    [[nodiscard]] bool loaded() const { return library_ != nullptr; }
    // An exported symbol of the loaded module, or null.
    [[nodiscard]] void* symbol(const std::string& name) const;
    // The eight services that the module published, null before its init hook.
    [[nodiscard]] const ScrollSystemInterface* services() const { return graphics_.get().ScrollSystem; }

    // ---- Scripts

    [[nodiscard]] const std::vector<ScriptConstant>& constants() const { return constants_; }
    [[nodiscard]] std::int32_t constant(std::string_view name) const;  // Error: no such constant
    [[nodiscard]] const std::vector<ScriptFunction>& functions() const { return functions_; }
    // Calls a script function. Errors: Error for a name that does not exist or a number of arguments it does
    // not take. What the module itself objects to is in the result.
    CallResult call(std::string_view name, std::span<const std::int32_t> arguments);
    CallResult call(std::string_view name, std::initializer_list<std::int32_t> arguments);

    [[nodiscard]] ScriptGlobals& globals() { return globals_; }
    // Short for globals().at().
    [[nodiscard]] std::int32_t& global(std::string_view name, std::int32_t index, std::string_view field);
    // Moves the data area of the globals and tells the module nothing: it has to look at GlobalData.
    void move_globals();

    // All script errors since the last clear, those of calls and those of frames.
    [[nodiscard]] const std::vector<ScriptError>& errors() const { return errors_; }
    void clear_errors() { errors_.clear(); }

    // ---- What the scripts' world is made of

    [[nodiscard]] Files& files() { return files_; }
    [[nodiscard]] Regions& regions() { return regions_; }
    [[nodiscard]] Processes& processes() { return processes_; }
    [[nodiscard]] BlitLists& blit_lists() { return blit_lists_; }
    [[nodiscard]] Palette& palette() { return palette_; }
    [[nodiscard]] Bitmap& screen() { return *screen_; }
    // What the screen shows.
    [[nodiscard]] Image screenshot() const { return to_opaque_image(*screen_, palette_); }
    void take_screenshot(Image& image) const { to_opaque_image(*screen_, palette_, image); }

    // ---- Frames

    // One frame: prepare_screen, run_hook(frame), add_screen_processes, draw_main_list.
    void frame();
    // Lays the backdrop over the screen; without one the screen keeps what it shows.
    void prepare_screen();
    // Runs one hook, if the module has it.
    void run_hook(Hook hook);
    // Adds an entry to the main list for each process in screen coordinates that is to be drawn.
    void add_screen_processes();
    // Sorts the main list, draws its entries, clears it. blit_lists().main().entries() can be looked at
    // before.
    void draw_main_list();

    // A map to lie behind everything, its top left at the screen's, looked up at each frame.
    void set_backdrop(std::int32_t file, std::int32_t graph);
    // A pixel value to fill the screen with at each frame.
    void set_backdrop(std::uint32_t pixel);
    // While suspended the module schedules no scroll.
    void set_suspended(bool suspended) { suspend_flag_ = suspended ? 1 : 0; }

    // Who is told of every call and every drawing from now on; null: nobody. Must outlive its time here.
    void observe(Observer* observer) { observer_ = observer; }

    // A new screen bitmap, region 0 laid over it, and the update hook. Errors: Error for a size out of range.
    void change_video_mode(const VideoMode& mode, const ModeChange& how = {});

    // ---- Being nasty: the raw records, to read and to write, and what the module did wrong

    [[nodiscard]] ExportRegistrar& registrar() { return registrar_.get(); }
    [[nodiscard]] HostRuntime& runtime() { return runtime_.get(); }
    [[nodiscard]] Graphics2DInterface& graphics() { return graphics_.get(); }
    [[nodiscard]] ProcessServices& process_services() { return process_services_.get(); }
    [[nodiscard]] FrameState& frame_state() { return frame_state_.get(); }
    [[nodiscard]] VideoInfo& video() { return video_.get(); }

    // Breaches of contract seen by a slot, in words: too many pops, a process deleted twice, an unknown list,
    // a draw that left another list selected ... Empty for a good module.
    [[nodiscard]] const std::vector<std::string>& faults() const { return faults_; }
    void clear_faults() { faults_.clear(); }
    void add_fault(std::string what) { faults_.push_back(std::move(what)); }

    // Words of records that belong to the host alone and do not hold the host's pattern any more, one line
    // each, and slack of fenced memory that was written. Empty for a good module.
    [[nodiscard]] std::vector<std::string> untouched() const;

    // The one that lives, or null.
    [[nodiscard]] static Engine* live() { return live_; }

  private:
    struct Slots;           // runtime_slots.cpp: the plain functions behind the records
    struct RegistrarSlots;  // registrar.cpp: those of the registration
    void publish_registrar();
    void publish_runtime();
    void publish_screen(const VideoMode& mode);
    void fill_screen_entry(ProcessLocals& process, Map& graphic);
    void check_dependencies() const;
    void register_module();
    void forget_module();

    static Engine* live_;

    Patterned<ExportRegistrar> registrar_;
    Patterned<HostRuntime> runtime_;
    Patterned<ProcessServices> process_services_;
    Patterned<Graphics2DInterface> graphics_;
    Patterned<FrameState> frame_state_;
    Patterned<VideoInfo> video_;
    std::uint8_t suspend_flag_ = 0;

    Fence fence_;
    Files files_;
    Regions regions_;
    Processes processes_;
    BlitLists blit_lists_;
    Palette palette_;
    std::unique_ptr<Bitmap> screen_;
    std::unique_ptr<Bitmap> old_screen_;
    ScriptGlobals globals_;

    std::vector<ScriptConstant> constants_;
    std::vector<ScriptFunction> functions_;
    std::array<void (*)(void), 5> hooks_{};  // by id; 0 unused
    std::vector<std::string> registration_errors_;
    std::vector<ScriptError> errors_;
    std::vector<std::string> faults_;
    Observer* observer_ = nullptr;
    CallFrame* call_ = nullptr;  // of the handler that runs
    bool registering_ = false;
    int registrar_calls_ = 0;  // word of the registrar's slot called last, plus 1

    struct MapBackdrop {
        std::int32_t file;
        std::int32_t graph;
    };
    std::optional<MapBackdrop> map_backdrop_;
    std::optional<std::uint32_t> pixel_backdrop_;

    std::unique_ptr<ModuleLibrary> library_;
};

}  // namespace host
