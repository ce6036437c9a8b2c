#include "tests/model/lockstep.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <random>
#include <utility>

#include "tests/model/numbers.h"
#include "tests/model/records.h"
#include "tests/model/routines.h"
#include "tests/png.h"

namespace model {

using scroll2d::ScrollRecord;

namespace {

std::string text(std::int32_t value) {
    return std::to_string(value);
}
std::string text(const std::vector<std::string>& lines) {
    std::string all;
    for (const std::string& line : lines) (all += "\n    ") += line;
    return all.empty() ? "nothing" : all;
}
std::string text(const std::vector<host::ScriptError>& errors) {
    std::vector<std::string> lines;
    lines.reserve(errors.size());
    for (const host::ScriptError& error : errors) lines.push_back(error.text());
    return text(lines);
}
std::string text(const std::vector<std::int32_t>& words) {
    std::string all;
    for (const std::int32_t word : words) (all += " ") += std::to_string(word);
    return all;
}
std::string hex(Pixel pixel) {
    char digits[12];
    std::snprintf(digits, sizeof digits, "%08x", pixel);
    return digits;
}

}  // namespace

// Half of the pixels stand alone, the rest lie in runs of a kind: drawing has short cuts for groups of pixels
// that are alike, and a run ends anywhere within one.
void fill_with_noise(host::Bitmap& bitmap, std::uint32_t seed) {
    std::mt19937 random(seed);
    Pixel kind = 0;
    Pixel left = 0;
    for (std::int32_t y = 0; y < bitmap.height(); ++y)
        for (std::int32_t x = 0; x < bitmap.width(); ++x) {
            if (left-- == 0) {
                kind = random();
                left = (kind & 63) == 0 ? kind >> 20 & 127 : 0;
            }
            Pixel pixel = random();
            if ((kind >> 6 & 3) == 1) pixel |= 0xFF000000;
            if ((kind >> 6 & 3) == 2) pixel &= 0x00FFFFFF;
            bitmap.set_pixel(x, y, (kind >> 8 & 3) == 0 ? 0 : pixel);
        }
}

std::filesystem::path module_path(const char* built) {
    const char* chosen = std::getenv("SCROLL2D_MODULE");
    return chosen != nullptr ? chosen : built;
}

Lockstep::Lockstep(const host::Options& options, const std::filesystem::path& module,
                   scroll2d::VectorUnit widest, scroll2d::Asking asking)
    : engine(options), model(engine) {
    replace_routines(engine.graphics());
    engine.load(module);
    inside_ = static_cast<const Inside*>(engine.symbol("scroll2d_inside"));
    if (inside_ != nullptr) {
        *inside_->widest_unit = widest;
        *inside_->asking = asking;
    }
    memory.attach(module.string().c_str());
    // A module that was not unloaded since its last game may remember positions of second planes.
    engine.files().create_map(1, 1, 1, 1);
    for (std::int32_t n = 0; n < 10; ++n) engine.call("scroll_start", {n, 1, 1, 1, -1, 0});
    engine.call("scroll_stop", {-1});
    engine.files().unload_file(1);
    engine.clear_errors();
}

void Lockstep::note(std::string what) {
    notes_.push_back(std::move(what));
    if (notes_.size() > 40) notes_.erase(notes_.begin(), notes_.begin() + 20);
}

void Lockstep::differ(const std::string& what) const {
    throw Mismatch(what + "\n  the last steps:" + text(notes_));
}

template <class Value>
void Lockstep::same(const Value& expected, const Value& actual, const std::string& what) const {
    if (expected != actual) differ(what + ": expected " + text(expected) + ", got " + text(actual));
}

// The fifteen fields of the ten elements, where the host keeps them now.
std::span<std::int32_t> Lockstep::script_fields() {
    return {&engine.global("scroll", 0, "camera"), 150};
}

void Lockstep::write(int scroll, Field field, std::int32_t value) {
    note("scroll[" + text(scroll) + "]." + name_of(kElementWords, field) + " = " + text(value));
    script_fields()[static_cast<std::size_t>(15 * scroll + field)] = value;
    model.elements[static_cast<std::size_t>(scroll)][field] = value;
}
void Lockstep::nudge(int scroll, Field field, std::int32_t by) {
    const Int to = Int{script_fields()[static_cast<std::size_t>(15 * scroll + field)]} + by;
    write(scroll, field, static_cast<std::int32_t>(std::clamp<Int>(to, INT32_MIN, INT32_MAX)));
}

void Lockstep::fail_allocations(int nth, bool for_good) {
    note("allocation " + text(nth) + (for_good ? " and on" : "") + " of each step is to fail");
    failing_ = nth;
    failing_for_good_ = for_good;
}

void Lockstep::interrupt(const InterruptedSlot& slot, std::uint32_t seed) {
    note("the host stops scrolls in " + slot.name);
    chance_.seed(seed);
    interruption_ = slot.interrupt(engine, [this] { stop_by_chance(); });
}

void Lockstep::stop_by_chance() {
    const std::uint32_t chosen = chance_();
    if (stopping_ > 2 || chosen % 4 != 0) return;
    ++stopping_;
    if (chosen / 4 % 4 == 0) {
        engine.services()->StopAllScroll();
    } else {
        engine.services()->StopScroll(static_cast<std::int32_t>(chosen / 16 % 3));
    }
    --stopping_;
}

void Lockstep::finish() {
    engine.unload();
    same(0, static_cast<int>(memory.live.size()), "blocks of memory after the end");
    same(0, memory.bad_frees, "wrong frees");
}

void Lockstep::begin_step() {
    model.look_at_processes();
    model.errors.clear();
    engine.clear_errors();
    passes.clear();
    model.sprite_passes.clear();
}

// The model goes first: it looks at the host as it was before the module changed it.
std::int32_t Lockstep::step(Named named, const Doing& actual, const Doing& expected) {
    if (interruption_ != nullptr) return interrupted_step(named, actual);
    begin_step();
    model.fail(failing_, failing_for_good_);
    const std::int32_t wanted = expected();
    memory.fail(failing_, failing_for_good_);
    const std::int32_t got = actual();
    same(wanted, got, "result");
    same(model.allocations, memory.made, "allocations");
    memory.heal();
    check();
    return got;
}

std::int32_t Lockstep::interrupted_step(Named named, const Doing& actual) {
    std::array<ScrollRecord, 10> records;
    std::copy_n(inside_->records, 10, records.begin());
    const std::vector<std::int32_t> fields(script_fields().begin(), script_fields().end());
    memory.fail(failing_, failing_for_good_);
    const std::int32_t got = actual();
    memory.heal();
    check_sound();
    for (int n = 0; n < 10; ++n) check_interrupted(n, at(records, n), &at(fields, Int{15} * n), named);
    return got;
}

std::int32_t Lockstep::call(const std::string& function, std::initializer_list<std::int32_t> arguments) {
    note(function + text(std::vector<std::int32_t>(arguments)));
    const std::span<const std::int32_t> a(arguments.begin(), arguments.size());
    const bool starts = function == "scroll_start" || function == "start_scroll";
    return step(
        {a[0], starts}, [&] { return engine.call(function, a).value; },
        [&] {
            if (starts) return model.start(a);
            if (function == "scroll_stop") return model.stop(a[0]);
            if (function == "scroll_move") return model.move(a[0]);
            if (function == "scroll_refresh") return model.refresh(a[0]);
            if (function != "scroll_set_destination") differ("no model of " + function);
            return model.set_destination(a[0], a[1], a[2], a[3]);
        });
}

void Lockstep::stop_service(std::int32_t scroll) {
    note("StopScroll " + text(scroll));
    step(
        {scroll}, [&] { return engine.services()->StopScroll(scroll), 0; },
        [&] { return model.stop_service(scroll), 0; });
}
void Lockstep::stop_all_service() {
    note("StopAllScroll");
    step(
        {}, [&] { return engine.services()->StopAllScroll(), 0; },
        [&] { return model.stop_all_service(), 0; });
}

void Lockstep::change_video_mode(const host::VideoMode& mode, bool reset,
                                 const std::function<void()>& meanwhile) {
    note("video mode " + text(mode.width) + " x " + text(mode.height) + " at " + text(mode.bits_per_pixel) +
         (reset ? " bits, reset" : " bits"));
    const auto before_update = [&] {
        bitmaps_changed();
        if (model.depth_is_news()) meanwhile();
        note("update");
        begin_step();
        if (reset) model.stop_all_service();
        model.take_depth();
    };
    engine.change_video_mode(
        mode,
        {.reset = reset, .keep_old_screen = true, .convert_maps = true, .before_update = before_update});
    interruption_ != nullptr ? check_sound() : check();
}

void Lockstep::begin_anew() {
    note("init");
    // The host gives the list that it has.
    Graphics2DInterface& g = engine.graphics();
    const auto create =
        std::exchange(g.CreateBlitList, [](const char* name, std::int32_t, std::int32_t) -> void* {
            return host::Engine::live()->blit_lists().find(name);
        });
    step(
        {.starts = true}, [&] { return engine.run_hook(host::Hook::init), 0; },
        [&] { return model.init(), 0; });
    g.CreateBlitList = create;
}

void Lockstep::frame() {
    note("frame");
    const bool suspended = *engine.frame_state().suspend_flag != 0;
    host::BlitQueue& main = engine.blit_lists().main();
    std::vector<Entry> wanted;
    step(
        {}, [&] { return engine.run_hook(host::Hook::frame), main.count(); },
        [&] {
            if (!suspended) wanted = model.schedule();
            return static_cast<std::int32_t>(wanted.size());
        });
    for (std::size_t i = 0; interruption_ == nullptr && i < wanted.size(); ++i) {
        Entry words = words_of(*main.entries()[i]);
        if (words[44] == 0) differ("a scroll entry has no draw routine");
        words[44] = 0;
        if (wanted[i] != words)
            differ("scroll entry " + std::to_string(i) + differences(kEntryWords, wanted[i], words));
    }
    main.sort();
    const std::vector<__RVKBlit2D__*> order = main.entries();
    for (__RVKBlit2D__* entry : order) draw_entry(*entry);
    main.clear();
}

void Lockstep::draw_entry(__RVKBlit2D__& entry) {
    note("draw scroll " + text(entry.id));
    const std::int32_t z_key = entry.z;
    const auto result = step(
        {entry.id}, [&] { return entry.draw(&entry); }, [&] { return model.blit(entry.id, z_key); });
    same(result, entry.drawn, "drawn of the entry");
    if (&engine.blit_lists().current() != &engine.blit_lists().main())
        differ("another list than the main one is current");
}

void Lockstep::draw_unscheduled(std::int32_t scroll, std::int32_t z) {
    host::BlitQueue& main = engine.blit_lists().main();
    engine.blit_lists().select(nullptr);
    __RVKBlit2D__& entry = *main.add();
    entry.id = scroll;
    entry.z = z;
    entry.draw = engine.services()->BlitScroll2D;
    draw_entry(entry);
    main.clear();
}

void Lockstep::ask_services(std::int32_t n, std::int32_t mask, __RVKRegion__ world) {
    if (interruption_ != nullptr) return;
    const ScrollSystemInterface& s = *engine.services();
    constexpr std::int32_t kNone = Model::kUnwritten;
    __RVKRegion__ region{kNone, kNone, kNone, kNone};
    __RVKPoint2D__ point{kNone, kNone}, both[2]{point, point}, one = point, two = point;
    // The result of each, then what it wrote.
    // clang-format off
    const Model::Answers actual{
        s.GetScrollRegion(n, mask, world.x, world.y, world.x2, world.y2, &region), region.x, region.x2, region.y, region.y2,
        s.GetScrollPoint(n, mask, &point), point.x, point.y,
        s.GetScrollPos(n, mask, &both[0], &both[1]), both[0].x, both[0].y, both[1].x, both[1].y,
        s.GetScrollPos(n, mask, &one, nullptr), one.x, one.y,
        s.GetScrollPos(n, mask, nullptr, &two), two.x, two.y,
        s.GetProcessInScroll(n, mask), s.GetProcessOutScroll(n, mask),
        s.GetScrollRegion(n, mask, 0, 0, 1, 1, nullptr), s.GetScrollPoint(n, mask, nullptr),
        s.GetScrollPos(n, mask, nullptr, nullptr)};
    // clang-format on
    const Model::Answers expected = model.answers(n, mask, world);
    if (actual != expected)
        differ("services, scroll " + text(n) + " with mask " + text(mask) +
               differences(kAnswers, expected, actual));
}

// ---- Comparing

void Lockstep::check() {
    same({}, engine.faults(), "faults");
    same(model.errors, engine.errors(), "errors");
    const std::span<const std::int32_t> fields = script_fields();
    for (std::size_t n = 0; n < 10; ++n) {
        Element actual;
        std::copy_n(fields.begin() + static_cast<std::ptrdiff_t>(15 * n), 15, actual.begin());
        if (model.elements[n] != actual)
            differ("scroll[" + std::to_string(n) + "]" +
                   differences(kElementWords, model.elements[n], actual));
    }
    if (inside_ != nullptr) check_records();
    check_processes();
    check_sprite_passes();
    check_bitmap("screen", engine.screen());
    for (std::int32_t f = 0; f < engine.files().file_count(); ++f)
        for (const std::int32_t graph : engine.files().graphs(f))
            check_bitmap("map " + text(graph) + " of file " + text(f), *engine.files().find_map(f, graph));
    for (std::int32_t n = -1; n <= 10; ++n) ask_services(n, 0, {0, 1, 0, 1});
    same(model.buffers(), static_cast<int>(memory.live.size()), "blocks of memory");
    same(0, memory.bad_frees, "wrong frees");
    if (++checks_ % 64 == 0) same({}, engine.untouched(), "words that are the host's");
}

// What holds whenever a host stops scrolls.
void Lockstep::check_sound() {
    same({}, engine.faults(), "faults");
    same({}, engine.untouched(), "words that are the host's");
    int buffers = 0;
    for (int n = 0; n < 10; ++n) {
        const ScrollRecord& r = inside_->records[n];
        if (const std::string wrong = trouble_of(r, memory); !wrong.empty())
            differ("record of scroll " + text(n) + wrong);
        if (r.active != 0) buffers += r.planes;
    }
    same(buffers, static_cast<int>(memory.live.size()), "blocks of memory");
    same(0, memory.bad_frees, "wrong frees");
}

// A scroll that the step does not name is as it was, or has been stopped; one that has been stopped is not
// written after that, unless it is being started.
void Lockstep::check_interrupted(int n, ScrollRecord before, const std::int32_t* fields, Named named) {
    const ScrollRecord& now = inside_->records[n];
    const bool ended = before.active != 0 && now.active == 0;
    const bool may_write = named.scroll == -1 || named.scroll == n;
    if (may_write && (!ended || named.starts)) return;
    if (ended) {
        before = may_write ? now : before;
        before.active = 0;
        before.buffer1 = before.buffer2 = nullptr;
        before.map1_pixels = before.map2_pixels = nullptr;
        before.made_pixel_bytes = 0;
    }
    if (std::memcmp(&before, &now, sizeof now) != 0)
        differ("the record of scroll " + text(n) + " was written");
    const std::int32_t* const fields_now = &script_fields()[static_cast<std::size_t>(15 * n)];
    const bool reset = std::equal(kDefaults.begin(), kDefaults.end(), fields_now);
    if (!reset && (ended || !std::equal(fields, fields + 15, fields_now)))
        differ("scroll[" + text(n) + "] was written");
}

void Lockstep::check_records() {
    for (std::size_t n = 0; n < 10; ++n) {
        const ScrollRecord& record = inside_->records[n];
        const std::string wrong = trouble_of(record, memory) + differences(model.scrolls[n], record);
        if (!wrong.empty()) differ("record of scroll " + std::to_string(n) + wrong);
    }
}

void Lockstep::check_processes() {
    std::size_t i = 0;
    for (const ProcessNode* n = engine.processes().first(host::scroll_coordinates); n != nullptr;
         n = n->next, ++i) {
        const std::int32_t id = host::Processes::id_of(*n->data);
        if (i == model.processes.size() || model.processes[i].first != id)
            differ("process " + std::to_string(i) + " of the list should have been deleted");
        Locals actual;
        std::memcpy(actual.data(), n->data, sizeof actual);
        if (model.processes[i].second != actual)
            differ("process " + std::to_string(i) + " of the list" +
                   differences(kProcessWords, model.processes[i].second, actual));
    }
    if (i != model.processes.size()) differ("a process was deleted that a running scroll shows");
}

void Lockstep::check_sprite_passes() {
    same(static_cast<std::int32_t>(model.sprite_passes.size()), static_cast<std::int32_t>(passes.size()),
         "sprite passes");
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const std::vector<Entry>& expected = model.sprite_passes[i];
        same(static_cast<std::int32_t>(expected.size()), static_cast<std::int32_t>(passes[i].size()),
             "entries of a pass");
        for (std::size_t k = 0; k < expected.size(); ++k) {
            Entry actual = passes[i][k];
            const bool layer = expected[k][44] == 0;
            if (actual[44] == 0) differ("an entry of a pass has no draw routine");
            if (layer) actual[44] = 0;
            if (expected[k] != actual)
                differ("entry " + std::to_string(k) + " of a pass" +
                       differences(kEntryWords, expected[k], actual));
        }
    }
}

void Lockstep::check_bitmap(const std::string& name, host::Bitmap& bitmap) {
    const std::vector<std::byte>& expected = model.pixels.at(&bitmap.record());
    if (std::equal(expected.begin(), expected.end(), bitmap.bytes().begin())) return;
    const auto bytes = static_cast<std::size_t>(model.bytes());
    const auto first =
        std::mismatch(expected.begin(), expected.end(), bitmap.bytes().begin()).first - expected.begin();
    const auto index = static_cast<std::int32_t>(static_cast<std::size_t>(first) / bytes);
    const std::int32_t x = index % bitmap.width();
    const std::int32_t y = index / bitmap.width();
    write_pictures(bitmap, expected);
    differ(name + ": pixel (" + text(x) + ", " + text(y) + "): expected " +
           hex(model.pixel(&bitmap.record(), index)) + ", got " + hex(bitmap.pixel(x, y)) +
           "\n    see mismatch_expected.png, mismatch_actual.png, mismatch_difference.png");
}

void Lockstep::write_pictures(const host::Bitmap& actual, const std::vector<std::byte>& expected) {
    host::Bitmap wanted(actual.width(), actual.height(), actual.bits_per_pixel(), host::Fence::none);
    std::copy(expected.begin(), expected.end(), wanted.bytes().begin());
    const host::Image is = to_opaque_image(actual, host::Palette());
    const host::Image should = to_opaque_image(wanted, host::Palette());
    host::Image difference = should;
    for (std::int32_t i = 0; i < is.width * is.height; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const bool equal =
            actual.pixel(i % is.width, i / is.width) == wanted.pixel(i % is.width, i / is.width);
        difference.pixels[k] = equal ? host::Rgba{0, 0, 0, 255} : host::Rgba{255, 0, 0, 255};
    }
    tests::write_png("mismatch_expected.png", should);
    tests::write_png("mismatch_actual.png", is);
    tests::write_png("mismatch_difference.png", difference);
}

}  // namespace model
