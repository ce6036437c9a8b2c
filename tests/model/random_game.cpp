#include "tests/model/random_game.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "tests/model/routines.h"

namespace model {

namespace {

// Numbers out of bytes; zeros once they are used up.
class Bytes {
  public:
    // Two draws are never arguments of one call: compilers differ in the order of evaluation.
    explicit Bytes(std::span<const std::uint8_t> bytes) : left_(bytes) {}
    [[nodiscard]] bool used_up() const { return left_.empty(); }
    std::int32_t byte() {
        if (left_.empty()) return 0;
        const std::uint8_t first = left_.front();
        left_ = left_.subspan(1);
        return first;
    }
    std::int32_t below(std::int32_t n) { return byte() % n; }  // n up to 256
    template <std::size_t n>
    std::int32_t of(const std::int32_t (&choices)[n]) {
        return choices[static_cast<std::size_t>(below(static_cast<std::int32_t>(n)))];
    }
    std::int32_t word() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<std::uint32_t>(byte());
        return static_cast<std::int32_t>(value);
    }
    // A width and a height; now and then a row or few that are long.
    template <std::size_t n>
    std::pair<std::int32_t, std::int32_t> size_of(const std::int32_t (&choices)[n],
                                                  const std::int32_t (&wide)[4]) {
        const std::int32_t chosen = byte();
        if (chosen >= 224) return {wide[chosen % 4], 1 + below(9)};
        return {choices[chosen % static_cast<std::int32_t>(n)], of(choices)};
    }
    bool one_in(std::int32_t n) { return below(n) == n - 1; }

    // A number that a script might write: mostly near 0, sometimes anything.
    std::int32_t number() {
        static constexpr std::int32_t kEdges[] = {
            INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1, 1 << 30, -(1 << 30), -1,  -2,  0,   1,
            2,         65535,         65536,     65537,         -65536,  1000,       999, 255, 256, 300,
            -5,        100000,        359999,    360000,        -1000};
        const std::int32_t kind = below(8);
        if (kind == 0) return of(kEdges);
        if (kind == 1) return word();
        if (kind == 2) return byte() * 8 - 1000;
        if (kind == 3) return below(5) - 1;
        return below(160) - 40;
    }

  private:
    std::span<const std::uint8_t> left_;
};

constexpr std::int32_t kFiles = 4;
constexpr std::int32_t kGraphs = 8;        // graph numbers that the game's maps use: 1 to 7, and 0
constexpr std::int32_t kSystemGraphs = 6;  // graph limit of file 0, and of destinations
constexpr std::int32_t kRegions = 6;
constexpr std::int32_t kExtents[] = {1, 2, 3, 5, 7, 8, 9, 13, 16, 17, 20, 31, 33, 48, 70, 150};
constexpr std::int32_t kScreenExtents[] = {1, 2, 7, 8, 16, 24, 33, 40, 64};
constexpr std::int32_t kWideExtents[] = {300, 333, 512, 700};  // long rows are drawn another way
constexpr std::int32_t kDepths[] = {8, 16, 32, 32, 32, 24};
constexpr std::size_t kProcesses = 24;  // at most

class Game {
  public:
    Game(Bytes& bytes, const std::filesystem::path& module, const Variant& variant)
        : in(bytes), run(options(bytes), module, variant.widest, variant.asking) {
        if (variant.interrupted != nullptr) run.interrupt(*variant.interrupted, variant.seed);
        for (std::int32_t graph = 1; graph <= 4; ++graph) make_map(1, graph);
        for (std::int32_t region = 1; region < kRegions; ++region) define_region(region);
        redraw_screen();
        start();
        start();
    }

    void step() {
        struct Choice {
            int weight;
            void (Game::*act)();
        };
        static constexpr Choice kChoices[] = {
            {40, &Game::frame},
            {30, &Game::steer},
            {20, &Game::write_field},
            {16, &Game::start},
            {4, &Game::stop},
            {14, &Game::move},
            {12, &Game::refresh},
            {14, &Game::aim},
            {14, &Game::change_region},
            {10, &Game::add_map},
            {8, &Game::remove_map},
            {10, &Game::redraw_map},
            {12, &Game::disfigure_map},
            {4, &Game::redraw_screen},
            {6, &Game::change_mode},
            {20, &Game::add_process},
            {14, &Game::change_process},
            {4, &Game::end_process},
            {12, &Game::follow},
            {8, &Game::ask},
            {2, &Game::stop_by_service},
            {2, &Game::resize_regions},
            {10, &Game::shorten_memory},
            {4, &Game::odd_host},
        };
        static const int kTotal = [] {
            int total = 0;
            for (const Choice& choice : kChoices) total += choice.weight;
            return total;
        }();
        int chosen = (in.byte() | in.byte() << 8) % kTotal;
        const Choice* choice = kChoices;
        while (chosen >= choice->weight) chosen -= (choice++)->weight;
        (this->*choice->act)();
    }

    void finish() { run.finish(); }

  private:
    static host::Options options(Bytes& bytes) {
        constexpr host::Fence kFences[] = {host::Fence::after, host::Fence::before, host::Fence::none};
        const auto [width, height] = bytes.size_of(kScreenExtents, kWideExtents);
        return {.width = width,
                .height = height,
                .bits_per_pixel = bytes.of(kDepths),
                .file_slots = kFiles,
                .region_slots = kRegions,
                .system_graph_count = kSystemGraphs,
                .fence = kFences[bytes.below(3)]};
    }

    // ---- Choosing

    std::int32_t scroll() { return in.one_in(6) ? in.below(10) : in.below(2); }
    std::int32_t scroll_argument() { return in.one_in(8) ? in.below(13) - 2 : scroll(); }
    std::int32_t perhaps_wild(std::int32_t sensible) { return in.one_in(24) ? in.number() : sensible; }
    std::int32_t file_number() { return in.one_in(4) ? in.below(kFiles) : 1; }
    // A map that exists, or null.
    host::Map* map() {
        const std::int32_t f = file_number();
        const std::vector<std::int32_t> graphs = run.engine.files().graphs(f);
        if (graphs.empty()) return nullptr;
        const auto i = static_cast<std::size_t>(in.byte()) % graphs.size();
        run.note("  map " + std::to_string(graphs[i]) + " of file " + std::to_string(f));
        return run.engine.files().find_map(f, graphs[i]);
    }
    ProcessLocals* process() {
        const std::vector<std::int32_t> ids = run.engine.processes().ids();
        if (ids.empty()) return nullptr;
        return run.engine.processes().find(ids[static_cast<std::size_t>(in.byte()) % ids.size()]);
    }

    // ---- The script's part

    void frame() { run.frame(); }

    void start() {
        const std::int32_t region = in.one_in(3) ? -1 : in.below(kRegions);
        const std::int32_t num = perhaps_wild(scroll());
        const std::int32_t f = perhaps_wild(file_number());
        const std::int32_t g1 = perhaps_wild(in.below(kGraphs));
        const std::int32_t g2 = perhaps_wild(in.below(kGraphs));
        const std::int32_t flags = perhaps_wild(in.below(16));
        if (in.one_in(6)) {
            run.call("start_scroll", {num, f, g1, g2, perhaps_wild(region), flags});
        } else {
            run.call("scroll_start",
                     {num, f, g1, g2, perhaps_wild(region), flags, perhaps_wild(in.below(4))});
        }
    }
    void stop() { run.call("scroll_stop", {perhaps_wild(scroll_argument())}); }
    void move() { run.call("scroll_move", {perhaps_wild(scroll_argument())}); }

    void refresh() {
        const std::int32_t n = scroll();
        if (in.one_in(2)) run.write(n, Field::graph1, perhaps_wild(in.below(kGraphs)));
        if (in.one_in(2)) run.write(n, Field::graph2, perhaps_wild(in.below(kGraphs)));
        if (in.one_in(4)) run.write(n, Field::file, perhaps_wild(in.below(kFiles + 1)));
        run.call("scroll_refresh", {in.one_in(4) ? perhaps_wild(-1) : n});
    }

    void aim() {
        const bool at_screen = in.one_in(2);
        const std::int32_t f = perhaps_wild(at_screen ? 0 : file_number());
        const std::int32_t graph = perhaps_wild(at_screen ? 0 : in.below(kGraphs));
        const std::int32_t region = in.one_in(3) ? -1 : in.below(kRegions);
        run.call("scroll_set_destination", {perhaps_wild(scroll_argument()), f, graph, perhaps_wild(region)});
    }

    // Sends the planes somewhere near.
    void steer() {
        const std::int32_t n = scroll();
        for (const Field position : {Field::x0, Field::y0, Field::x1, Field::y1})
            if (in.one_in(2)) run.nudge(n, position, in.below(41) - 20);
        run.write(n, Field::alpha, in.of({0, 1, 127, 128, 254, 255, 255, 255, 255}));
    }
    void write_field() {
        const std::int32_t n = scroll();
        const auto field = static_cast<Field>(in.below(15));
        if (field == Field::region1 || field == Field::region2)
            return run.write(n, field, perhaps_wild(in.below(kRegions + 1) - 1));
        if (field == Field::ratio)
            return run.write(n, field, perhaps_wild(in.of({0, 1, 50, 100, 150, 200, -100})));
        if (field == Field::speed) return run.write(n, field, perhaps_wild(in.below(9) - 1));
        if (field == Field::visible) return run.write(n, field, perhaps_wild(in.of({1, 1, 1, 0, 2})));
        if (field == Field::camera) return run.write(n, field, in.one_in(3) ? in.number() : 0);
        run.write(n, field, in.number());
    }
    // Has a scroll follow a process, which may end without the scroll's being told.
    void follow() {
        const ProcessLocals* p = process();
        if (p == nullptr) return;
        const std::int32_t n = scroll();
        run.write(n, Field::camera, host::Processes::id_of(*p));
        if (in.one_in(2)) run.write(n, Field::region1, in.below(kRegions));
        if (in.one_in(2)) run.write(n, Field::region2, in.below(kRegions));
        if (in.one_in(2)) run.write(n, Field::speed, in.below(5));
    }
    void ask() {
        const std::int32_t n = perhaps_wild(scroll());
        const std::int32_t mask = in.one_in(2) ? 1 << in.below(11) : in.number();
        run.ask_services(n, mask, {in.number(), in.number(), in.number(), in.number()});
    }

    // ---- The host's part

    void stop_by_service() {
        if (in.one_in(3)) return run.stop_all_service();
        run.stop_service(perhaps_wild(scroll()));
    }

    void change_region() { define_region(in.below(run.engine.regions().count())); }
    void define_region(std::int32_t region) {
        host::Regions& regions = run.engine.regions();
        if (region >= regions.count()) return;
        run.note("region " + std::to_string(region));
        if (in.one_in(12)) return regions.undefine(region);
        if (in.one_in(8)) return regions.define(region, {in.number(), in.number(), in.number(), in.number()});
        // Few sizes, so that regions often move without a change of size, and take back a size they had.
        const std::int32_t left = in.below(run.engine.screen().width() + 4) - 4;
        const std::int32_t top = in.below(run.engine.screen().height() + 4) - 4;
        const std::int32_t right = left + in.of({8, 8, 17, 30, 1, 0}) - 1;
        regions.define(region, left, top, right, top + in.of({6, 6, 13, 25, 1, -1}) - 1);
    }
    void resize_regions() { run.engine.regions().resize(1 + in.below(kRegions)); }

    void add_map() { make_map(file_number(), in.below(kGraphs)); }
    void make_map(std::int32_t f, std::int32_t graph) {
        if (f >= run.engine.files().file_count()) return;
        if (f == 0 && graph >= run.engine.files().system_graph_count()) return;
        run.note("new map " + std::to_string(graph) + " of file " + std::to_string(f));
        const auto [width, height] = in.size_of(kExtents, kWideExtents);
        host::Map& made = run.engine.files().create_map(f, graph, width, height);
        made.set_alpha_flag(in.one_in(2));
        if (in.one_in(3)) {
            const __RVKPoint2D__ reference{in.number(), in.number()};
            made.set_control_points({&reference, 1});
        }
        fill_with_noise(made, static_cast<std::uint32_t>(in.byte()));
        run.bitmaps_changed();
    }
    void remove_map() {
        const std::int32_t f = file_number();
        run.note("map or file " + std::to_string(f) + " goes");
        if (in.one_in(6)) {
            run.engine.files().unload_file(f);
        } else {
            run.engine.files().unload_map(f, in.below(kGraphs));
        }
        run.bitmaps_changed();
    }
    void redraw_map() {
        if (host::Map* m = map()) fill_with_noise(*m, static_cast<std::uint32_t>(in.byte()));
        run.bitmaps_changed();
    }
    void redraw_screen() {
        fill_with_noise(run.engine.screen(), static_cast<std::uint32_t>(in.byte()));
        run.bitmaps_changed();
    }
    // What a host may do to a map's records without replacing the map.
    void disfigure_map() {
        host::Map* m = map();
        if (m == nullptr) return;
        MapRecord& record = m->record();
        const std::int32_t kind = in.below(8);
        if (kind == 0) record.alpha_flag = static_cast<std::uint8_t>(in.byte());
        if (kind == 1) m->entry().bitmap = m->entry().bitmap == nullptr ? &record : nullptr;
        if (kind == 2) m->entry().word0 = in.below(2);
        if (kind == 3) record.width = record.width == m->width() ? in.below(m->width()) : m->width();
        if (kind == 4) record.height = record.height == m->height() ? in.below(m->height()) : m->height();
        if (kind == 5) record.pixels = record.pixels == nullptr ? m->bytes().data() : nullptr;
        if (kind == 6) record.cpoint_count = 0;
        if (kind == 7) m->set_alpha_flag(in.one_in(2));
        run.note("  is changed: " + std::to_string(record.width) + " x " + std::to_string(record.height) +
                 (record.pixels == nullptr ? " without pixels" : "") +
                 (m->entry().bitmap == nullptr ? " hidden" : ""));
    }

    void change_mode() {
        const auto [width, height] = in.size_of(kScreenExtents, kWideExtents);
        const host::VideoMode mode{width, height, in.of(kDepths)};
        run.change_video_mode(mode, in.one_in(4), [this] {
            run.draw_unscheduled(0, 0);
            for (const char* function : {"scroll_move", "scroll_refresh"}) run.call(function, {-1});
            run.call("scroll_start", {1, 1, 1, 2, -1, 0});
            run.call("scroll_set_destination", {-1, 0, 0, -1});
            run.frame();
        });
        if (in.one_in(2)) redraw_screen();
    }

    void add_process() {
        if (run.engine.processes().count() >= kProcesses) return;
        run.note("new process");
        ProcessLocals& p = run.engine.processes().create(in.one_in(5) ? 0 : host::scroll_coordinates);
        p.file = in.one_in(8) ? in.below(kFiles) : 1;
        p.graph = in.below(kGraphs);
        p.x = in.below(80);
        p.y = in.below(60);
        p.z = in.of({512, 511, 513, 100, 900});
        p.angle = in.of({0, 0, 90000, -90000, 720000, 45000});
        if (in.one_in(3)) p.region = in.below(kRegions + 1);
        if (in.one_in(3)) p.scroll_mask = in.below(8);
        if (in.one_in(3)) change_graph_table(p);
    }
    void change_graph_table(const ProcessLocals& p) {
        std::vector<std::int32_t> table{in.one_in(8) ? in.number() : in.below(9)};
        for (std::int32_t i = 0; i < std::clamp(table[0], 0, 256); ++i)
            table.push_back(in.below(2 * kGraphs) - kGraphs);
        if (in.one_in(4)) table.clear();
        run.engine.processes().set_graph_table(host::Processes::id_of(p), table);
    }
    void change_process() {
        ProcessLocals* p = process();
        if (p == nullptr) return;
        using P = ProcessLocals;
        // From here on in the order of the record; each with the values that matter to it.
        static constexpr std::int32_t P::*kFields[] = {
            &P::status, &P::scroll_mark, &P::scroll_mask, &P::file,   &P::graph,      &P::x,
            &P::y,      &P::z,           &P::word33,      &P::region, &P::resolution, &P::word38,
            &P::angle,  &P::size,        &P::size_x,      &P::size_y, &P::word43,     &P::word44,
            &P::flags,  &P::word46,      &P::word47,      &P::word48, &P::word49};
        const std::int32_t kind = in.below(8);
        if (kind < 4) {
            p->x += in.below(31) - 15;  // a camera that walks
            p->y += in.below(31) - 15;
        } else if (kind == 4) {
            p->*kFields[in.below(std::size(kFields))] = in.number();
        } else if (kind == 5) {
            p->*kFields[in.below(std::size(kFields))] = in.of({0, 1, 2, 3, 4, 100, 90000, 10});
        } else if (kind == 6) {
            change_graph_table(*p);
        } else {
            run.engine.processes().set_type(host::Processes::id_of(*p), in.below(2));
        }
        // The walk must not leave the numbers.
        p->x = std::clamp(p->x, INT32_MIN + 16, INT32_MAX - 16);
        p->y = std::clamp(p->y, INT32_MIN + 16, INT32_MAX - 16);
    }
    void end_process() {
        if (const ProcessLocals* p = process()) run.engine.processes().destroy(host::Processes::id_of(*p));
    }

    void shorten_memory() {
        const bool healed = in.one_in(2);
        const int nth = 1 + in.below(4);
        run.fail_allocations(healed ? 0 : nth, in.one_in(2));
    }

    void change_counts() {
        const std::int32_t files = 2 + in.below(kFiles - 1);
        run.engine.files().set_counts(files, 1 + in.below(kSystemGraphs));
        run.bitmaps_changed();
    }
    void odd_host() {
        const std::int32_t kind = in.below(8);
        if (kind == 0) run.engine.move_globals();
        if (kind == 1) run.engine.set_suspended(in.one_in(2));
        if (kind == 2) change_counts();
        if (kind == 3) draw_unscheduled();
        if (kind == 4) change_file();
        if (kind == 5) run.begin_anew();
        if (kind >= 6) have_sprite_stop();
    }
    void draw_unscheduled() {
        const std::int32_t n = perhaps_wild(scroll());
        run.draw_unscheduled(n, in.number());
    }
    void change_file() {
        if (FileRecord* f = run.engine.files().find_file(file_number())) f->word1 = in.below(2);
    }
    void have_sprite_stop() {
        ProcessLocals* p = process();
        if (p == nullptr) return;
        p->word49 = kStopsScroll;
        p->word48 = in.below(2);
        p->scroll_mask = 0;
    }

    // NOLINTBEGIN(readability-identifier-naming): every line above reads with them as words
    Bytes& in;
    Lockstep run;
    // NOLINTEND(readability-identifier-naming)
};

}  // namespace

void play_game(std::span<const std::uint8_t> bytes, const std::filesystem::path& module,
               const Variant& variant) {
    Bytes in(bytes);
    Game game(in, module, variant);
    while (!in.used_up()) game.step();
    game.finish();
}

}  // namespace model
