// The module once more, as naive as can be: the oracle of the random tests.
//
// A plane is a plain picture of its view. A fill samples the map pixel by pixel, a shift moves the picture
// and samples what came into view; so map pixels changed since they were copied go on showing, as they must.
// All arithmetic is in 64 bits. The model reads what the host has (maps, regions, processes, limits) from the
// engine, and keeps its own copy of all that the module may write. It never calls the module.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/engine.h"
#include "tests/model/pixels.h"

namespace model {

using Int = std::int64_t;

// Records by word number.
using Entry = std::array<std::int32_t, 45>;    // of a blit list
using Locals = std::array<std::int32_t, 50>;   // of a process
using Element = std::array<std::int32_t, 15>;  // of scroll[10]; fields in declaration order
enum Field {
    camera,
    ratio,
    file,
    graph1,
    graph2,
    region1,
    region2,
    speed,
    x0,
    y0,
    x1,
    y1,
    z,
    alpha,
    visible
};
inline constexpr Element kDefaults = {0, 200, 0, 0, 0, -1, -1, 0, 0, 0, 0, 0, 512, 255, 1};
inline constexpr std::int32_t kFailure = INT32_MIN;

// A block of pixels that sprites are drawn from or into.
struct Surface {
    Int width;
    Int height;
    std::byte* pixels;
};

struct Plane {
    std::int32_t graph = 0;
    Int x = 0;  // position on record
    Int y = 0;
    Int map_width = 0;  // on record; also the row length by which the map is read
    Int map_height = 0;
    bool alpha_flag = false;
    const MapRecord* map = nullptr;    // as last looked up
    const void* map_pixels = nullptr;  // its pixels then
    std::vector<Pixel> picture;        // width x height
};

struct Scroll {
    bool active = false;
    int planes = 0;
    std::int32_t file = 0;
    std::int32_t flags = 0;
    std::int32_t region = 0;
    std::int32_t mode = 0;
    std::int32_t alpha = 255;
    Int dest_x = 0, dest_y = 0, width = 0, height = 0;
    std::int32_t dest_file = 0, dest_graph = 0;
    std::array<Plane, 2> plane;
    // What the pictures were made for; 0: they show nothing.
    Int made_width = 0, made_height = 0, made_bytes = 0;
    std::optional<Int> shortage_told;  // bytes
};

class Model {
  public:
    // Script elements at their defaults, all scrolls idle.
    explicit Model(host::Engine& engine);

    // ---- What the module may write, as it should be now
    std::array<Scroll, 10> scrolls;
    std::array<Element, 10> elements;
    std::vector<std::pair<std::int32_t, Locals>> processes;  // of scroll coordinates, in list order
    std::vector<host::ScriptError> errors;                   // since cleared
    std::vector<std::vector<Entry>> sprite_passes;           // since cleared; word 44 is 0 in a layer entry
    std::map<const MapRecord*, std::vector<std::byte>> pixels;  // of the screen and of every map
    int allocations = 0;                                        // asked for since the last fail()

    // From now on the n-th allocation fails, counted from 1; with `for_good` all after it too. 0: none.
    void fail(int nth, bool for_good);
    // Blocks of memory that the module should hold.
    [[nodiscard]] int buffers() const;

    // Takes over what a test has done to bitmaps, or to processes.
    void look_at_bitmaps();
    void look_at_processes();

    // ---- The module's doings. Each returns what the script or the host gets.
    void init();
    void take_depth() {
        depth_bytes_ = bytes();
    }  // at an update; until then no bitmap of a new depth is touched
    [[nodiscard]] bool depth_is_news() const { return depth_bytes_ != bytes(); }
    std::int32_t start(std::span<const std::int32_t> arguments);
    std::int32_t stop(std::int32_t number);
    std::int32_t move(std::int32_t number);
    std::int32_t refresh(std::int32_t number);
    std::int32_t set_destination(std::int32_t number, std::int32_t file, std::int32_t graph,
                                 std::int32_t region);
    void stop_service(std::int32_t number);
    void stop_all_service();
    std::vector<Entry> schedule();  // the entries of a frame, in order of creation
    std::int32_t blit(std::int32_t number, std::int32_t entry_z);

    // Results and outputs of all services, in the order of Lockstep::ask_services; w is x, y, width, height.
    using Answers = std::array<std::int32_t, 24>;
    static constexpr std::int32_t kUnwritten = 0x5EED;
    [[nodiscard]] Answers answers(std::int32_t n, std::int32_t mask, const __RVKRegion__& w) const;

    [[nodiscard]] Int bytes() const;  // per pixel
    [[nodiscard]] Pixel pixel(const MapRecord* bitmap, Int index) const;
    [[nodiscard]] Look look(const Scroll& s) const;

  private:
    struct View {
        Int x, y, width, height;
        [[nodiscard]] bool empty() const { return width < 1 || height < 1; }
    };
    enum class Maps { ready, too_small, gone };

    std::int32_t fail(std::int32_t code, const char* function, std::int32_t argument, Int value);
    bool refuse_number(std::int32_t number, const char* function, std::int32_t code);
    bool allocate(Int size);
    [[nodiscard]] bool usable(const MapRecord* bitmap) const;
    [[nodiscard]] const MapRecord* bitmap(std::int32_t file, std::int32_t graph) const;
    [[nodiscard]] const MapRecord* screen() const;
    [[nodiscard]] const MapRecord* destination(const Scroll& s) const;
    [[nodiscard]] const __RVKRegion__* region(std::int32_t number) const;
    void set_pixel(const MapRecord* bitmap, Int index, Pixel value);
    Surface surface(const MapRecord* bitmap);

    // Planes
    [[nodiscard]] Pixel sample(const Plane& p, Int x, Int y) const;
    [[nodiscard]] bool fits(const Scroll& s) const;
    void fill(Scroll& s, int plane, Int x, Int y);
    void mirror(int scroll);
    void set(int scroll, int plane, Int x, Int y);
    void shift(int scroll, int plane, Int dx, Int dy);
    Maps look_up_maps(Scroll& s);
    static void take_pixels(Plane& p, const MapRecord* map);
    static void take_map(Plane& p, const MapRecord* map);

    // Views and buffers
    [[nodiscard]] static View asked_view(const __RVKRegion__* region, const MapRecord& on);
    [[nodiscard]] static View cut(View view, const MapRecord& on);
    [[nodiscard]] static View view(const Scroll& s) { return {s.dest_x, s.dest_y, s.width, s.height}; }
    static void store(Scroll& s, View view);
    [[nodiscard]] Int buffer_size(const Scroll& s) const;
    int renew(Scroll& s);
    int make_fit(Scroll& s);
    void tell_shortage(Scroll& s, int failed_plane);
    bool bring_view_up_to_date(int scroll);

    // Movement, drawing, stopping
    void move_scroll(int scroll);
    void follow_camera(int scroll, const ProcessLocals& camera);
    bool refresh_scroll(int scroll);
    void draw_planes(Scroll& s);
    template <class Rule>
    void draw(Scroll& s, Rule rule);
    void draw_sprites(int scroll, std::int32_t entry_z);
    bool collect(int scroll, Locals& p, Entry& entry);
    static void release(Scroll& s);
    void delete_processes();

    host::Engine& engine_;
    Int depth_bytes_ = 0;
    int failing_ = 0;
    bool failing_for_good_ = false;
};

}  // namespace model
