#include <cstring>

#include "tests/model/model.h"
#include "tests/model/numbers.h"

namespace model {

Model::Model(host::Engine& engine) : engine_(engine) {
    elements.fill(kDefaults);
    init();
    look_at_bitmaps();
}

void Model::init() {
    for (Scroll& s : scrolls) {
        s.active = false;
        s.made_bytes = s.width = s.height = 0;
        s.planes = s.file = s.dest_file = s.dest_graph = 0;
        s.alpha = 255;
        for (Plane& p : s.plane) {
            p.graph = 0;
            p.map_pixels = nullptr;
        }
    }
    take_depth();
}

void Model::look_at_bitmaps() {
    pixels.clear();
    const auto take = [this](host::Bitmap& b) {
        pixels[&b.record()].assign(b.bytes().begin(), b.bytes().end());
    };
    take(engine_.screen());
    for (std::int32_t f = 0; f < engine_.files().file_count(); ++f)
        for (const std::int32_t graph : engine_.files().graphs(f)) take(*engine_.files().find_map(f, graph));
}

void Model::look_at_processes() {
    processes.clear();
    for (const ProcessNode* n = engine_.processes().first(host::scroll_coordinates); n != nullptr;
         n = n->next) {
        auto& [id, locals] = processes.emplace_back();
        id = address(n->data);
        std::memcpy(locals.data(), n->data, sizeof locals);
    }
}

// ---- What the host has

Int Model::bytes() const {
    return host::bytes_per_pixel(engine_.video().bits_per_pixel);
}
bool Model::usable(const MapRecord* b) const {
    return b != nullptr && b->pixels != nullptr && b->width >= 1 && b->height >= 1 && !depth_is_news();
}
const MapRecord* Model::bitmap(std::int32_t f, std::int32_t graph) const {
    host::Map* map = engine_.files().find_map(f, graph);
    return map != nullptr && usable(map->entry().bitmap) ? map->entry().bitmap : nullptr;
}
const MapRecord* Model::screen() const {
    return usable(engine_.graphics().ScreenMap) ? engine_.graphics().ScreenMap : nullptr;
}
const MapRecord* Model::destination(const Scroll& s) const {
    return s.dest_graph == 0 ? screen() : bitmap(s.dest_file, s.dest_graph);
}
const __RVKRegion__* Model::region(std::int32_t number) const {
    if (number < 0 || number >= engine_.regions().count()) return nullptr;
    return &engine_.regions().at(number);
}
Pixel Model::pixel(const MapRecord* b, Int index) const {
    Pixel value = 0;
    const auto& from = pixels.at(b);
    const auto size = static_cast<std::size_t>(bytes());
    if (static_cast<std::size_t>(index + 1) * size > from.size())
        throw host::Error("the model left a bitmap");
    std::memcpy(&value, from.data() + static_cast<std::size_t>(index) * size, size);
    return value;
}
void Model::set_pixel(const MapRecord* b, Int index, Pixel value) {
    const auto size = static_cast<std::size_t>(bytes());
    std::memcpy(pixels.at(b).data() + static_cast<std::size_t>(index) * size, &value, size);
}
Surface Model::surface(const MapRecord* b) {
    return {b->width, b->height, b->pixels != nullptr ? pixels.at(b).data() : nullptr};
}

std::int32_t Model::fail(std::int32_t code, const char* function, std::int32_t argument, Int value) {
    errors.push_back({code, function, 0, argument, wrap(value)});
    return kFailure;
}
bool Model::refuse_number(std::int32_t number, const char* function, std::int32_t code) {
    if (number == -1 || in_range(number)) return false;
    fail(code, function, 1, number);
    return true;
}
void Model::fail(int nth, bool for_good) {
    allocations = 0;
    failing_ = nth;
    failing_for_good_ = for_good;
}
bool Model::allocate(Int size) {
    if (size > INT32_MAX) return false;
    ++allocations;
    return failing_ == 0 || allocations < failing_ || (allocations > failing_ && !failing_for_good_);
}
int Model::buffers() const {
    int count = 0;
    for (const Scroll& s : scrolls) count += s.active ? s.planes : 0;
    return count;
}

// ---- Services

// clang-format off
Model::Answers Model::answers(std::int32_t n, std::int32_t mask, const __RVKRegion__& w) const {
    constexpr std::int32_t none = kUnwritten;
    const std::int32_t out = in_range(n) && !shown(mask, n) ? 1 : 0;
    if (!in_range(n) || !at(scrolls, n).active || !shown(mask, n))
        return {0, none, none, none, none,  0, none, none,  0, none, none, none, none,
                0, none, none,  0, none, none,  0, out,  0, 0, 0};
    const Scroll& s = at(scrolls, n);
    const Plane& a = s.plane[0];
    const Plane& b = s.plane[1];
    const Int x = s.dest_x - a.x;
    const Int y = s.dest_y - a.y;
    const std::int32_t ax = wrap(a.x), ay = wrap(a.y), bx = wrap(b.x), by = wrap(b.y);
    return {1, wrap(w.x + x), wrap(w.x + x + w.x2 - 1), wrap(w.y + y), wrap(w.y + y + w.y2 - 1),  1, wrap(x), wrap(y),
            1, ax, ay, bx, by,  1, ax, ay,  1, bx, by,  1, out,  0, 0, 0};
}
// clang-format on

}  // namespace model
