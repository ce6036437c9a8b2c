#include "tests/model.h"

#include <algorithm>
#include <cstring>

namespace model {

namespace {

constexpr std::int32_t kScrollsMax = 9;

template <class Table>
auto& at(Table& table, Int index) {
    return table[static_cast<std::size_t>(index)];
}

Int floor_mod(Int a, Int m) {
    return (a % m + m) % m;
}
std::int32_t wrap(Int value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}
std::int32_t saturate(Int value) {
    return static_cast<std::int32_t>(std::clamp<Int>(value, INT32_MIN, INT32_MAX));
}
bool in_range(std::int32_t n) {
    return n >= 0 && n <= kScrollsMax;
}
bool bit(std::int32_t mask, std::int32_t i) {
    return (static_cast<std::uint32_t>(mask) >> i & 1) != 0;
}
bool shown(std::int32_t mask, std::int32_t n) {
    return mask == 0 || bit(mask, n);
}
// The scrolls of a script's number.
std::vector<int> range(std::int32_t number) {
    if (number == -1) return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    return {number};
}
bool valid(const MapRecord* b) {
    return b != nullptr && b->pixels != nullptr && b->width >= 1 && b->height >= 1;
}

Entry blank_entry() {
    Entry entry;
    for (std::size_t i = 0; i < entry.size(); ++i)
        entry[i] = static_cast<std::int32_t>(host::pattern_word(i));
    entry[2] = 0;
    entry[44] = 0;
    return entry;
}
template <class Pointer>
std::int32_t address(Pointer* p) {
    return static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(p));
}

}  // namespace

Model::Model(host::Engine& engine, Sprite sprite) : engine_(engine), sprite_(std::move(sprite)) {
    elements.fill(kDefaults);
    look_at_bitmaps();
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
    for (const ProcessNode* n = engine_.processes().first(host::kScrollCoordinates); n != nullptr;
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
const MapRecord* Model::bitmap(std::int32_t f, std::int32_t graph) const {
    host::Map* map = engine_.files().find_map(f, graph);
    return map != nullptr && valid(map->entry().bitmap) ? map->entry().bitmap : nullptr;
}
const MapRecord* Model::destination(const Scroll& s) const {
    if (s.dest_graph == 0) return engine_.graphics().ScreenMap;
    return bitmap(s.dest_file, s.dest_graph);
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

// ---- Planes

Pixel Model::sample(const Plane& p, Int x, Int y) const {
    return pixel(p.map, floor_mod(y, p.map_height) * p.map_width + floor_mod(x, p.map_width));
}
bool Model::fits(const Scroll& s) const {
    return s.width >= 1 && s.height >= 1 && s.made_width == s.width && s.made_height == s.height &&
           s.made_bytes == bytes();
}

// A negative position becomes 0 before the far edge is looked at.
static Int clamped(Int at, bool wraps, Int view, Int map) {
    if (wraps) return wrap(at);
    if (at < 0) return 0;
    return at + view >= map ? map - view : at;
}
static bool wraps_x(const Scroll& s, int plane) {
    return bit(s.flags, 2 * plane);
}
static bool wraps_y(const Scroll& s, int plane) {
    return bit(s.flags, 2 * plane + 1);
}

void Model::fill(Scroll& s, int plane, Int x, Int y) {
    if (!fits(s)) return;
    Plane& p = at(s.plane, plane);
    p.x = clamped(x, wraps_x(s, plane), s.width, p.map_width);
    p.y = clamped(y, wraps_y(s, plane), s.height, p.map_height);
    p.picture.clear();
    for (Int r = 0; r < s.height; ++r)
        for (Int c = 0; c < s.width; ++c) p.picture.push_back(sample(p, p.x + c, p.y + r));
}

void Model::mirror(int n) {
    const auto& plane = at(scrolls, n).plane;
    Element& e = at(elements, n);
    e[x0] = wrap(plane[0].x);
    e[y0] = wrap(plane[0].y);
    e[x1] = wrap(plane[1].x);
    e[y1] = wrap(plane[1].y);
}

void Model::set(int n, int plane, Int x, Int y) {
    fill(at(scrolls, n), plane, x, y);
    mirror(n);
}

void Model::shift(int n, int plane, Int dx, Int dy) {
    Scroll& s = at(scrolls, n);
    Plane& p = at(s.plane, plane);
    if (!fits(s)) return;
    const Int x = clamped(p.x + dx, wraps_x(s, plane), s.width, p.map_width);
    const Int y = clamped(p.y + dy, wraps_y(s, plane), s.height, p.map_height);
    const Int right = x - p.x;
    const Int down = y - p.y;
    if (std::abs(right) > s.width / 2 || std::abs(down) > s.height / 2) return set(n, plane, x, y);

    const std::vector<Pixel> old = p.picture;
    for (Int r = 0; r < s.height; ++r)
        for (Int c = 0; c < s.width; ++c) {
            const Int from_c = c + right;
            const Int from_r = r + down;
            const bool stays = from_c >= 0 && from_c < s.width && from_r >= 0 && from_r < s.height;
            at(p.picture, r * s.width + c) =
                stays ? at(old, from_r * s.width + from_c) : sample(p, x + c, y + r);
        }
    p.x = x;
    p.y = y;
    Element& e = at(elements, n);
    e[plane == 0 ? x0 : x1] = wrap(x);
    e[plane == 0 ? y0 : y1] = wrap(y);
}

// The pixels and the alpha flag are the map's of this moment, the sizes those of the start or last refresh.
Model::Maps Model::look_up_maps(Scroll& s) {
    bool too_small = false;
    for (int i = 0; i < s.planes; ++i) {
        Plane& p = at(s.plane, i);
        const MapRecord* map = bitmap(s.file, p.graph);
        if (map == nullptr) return Maps::gone;
        if (map->width < p.map_width || map->height < p.map_height) {
            too_small = true;
            continue;
        }
        p.map = map;
        p.alpha_flag = map->alpha_flag != 0;
    }
    return too_small ? Maps::too_small : Maps::ready;
}

void Model::take_map(Plane& p, const MapRecord* map) {
    p.map = map;
    p.map_width = map->width;
    p.map_height = map->height;
    p.alpha_flag = map->alpha_flag != 0;
}

// ---- Views and buffers

Model::View Model::asked_view(const __RVKRegion__* r, const MapRecord& on) const {
    if (r == nullptr) return {0, 0, on.width, on.height};
    const Int x = std::max(r->x, 0);
    const Int y = std::max(r->y, 0);
    return {x, y, Int{r->x2} - x + 1, Int{r->y2} - y + 1};
}
Model::View Model::cut(View v, const MapRecord& on) const {
    if (v.width > on.width) v.width = on.width;
    if (v.x + v.width > on.width) v.width = on.width - v.x;
    if (v.height > on.height) v.height = on.height;
    if (v.y + v.height > on.height) v.height = on.height - v.y;
    return v;
}
void Model::store(Scroll& s, View v) {
    s.dest_x = v.x;
    s.dest_y = v.y;
    s.width = saturate(v.width);
    s.height = saturate(v.height);
}
Int Model::buffer_size(const Scroll& s) const {
    return (s.height + 1) * s.width * bytes();
}

// New buffers, all or none. Returns the plane that got none, counted from 1, or 0.
int Model::renew(Scroll& s) {
    for (int i = 0; i < s.planes; ++i)
        if (!allocate(buffer_size(s))) return i + 1;
    s.made_width = s.width;
    s.made_height = s.height;
    s.made_bytes = bytes();
    s.shortage_told = false;
    return 0;
}

// After a change of depth: the same view anew, and what the script wrote stays.
int Model::make_fit(Scroll& s) {
    if (fits(s) || view(s).empty()) return 0;
    if (const int failed = renew(s)) return failed;
    for (int i = 0; i < s.planes; ++i) fill(s, i, at(s.plane, i).x, at(s.plane, i).y);
    return 0;
}

void Model::tell_shortage(Scroll& s, int failed_plane) {
    if (!s.shortage_told) fail(100, "RVK_mod_scroll2D", 0, failed_plane == 1 ? buffer_size(s) : 0);
    s.shortage_told = true;
}

bool Model::bring_view_up_to_date(int n) {
    Scroll& s = at(scrolls, n);
    if (const int failed = make_fit(s)) {
        tell_shortage(s, failed);
        return false;
    }
    const MapRecord& on = *destination(s);
    const View old = view(s);
    const View asked = asked_view(region(s.region), on);
    store(s, asked);
    if (asked.empty()) return false;
    const bool inside = asked.x + asked.width <= on.width && asked.y + asked.height <= on.height;
    if (inside && asked.width == old.width && asked.height == old.height) {
        s.shortage_told = false;
        return true;
    }
    store(s, cut(asked, on));
    if (view(s).empty()) return false;
    if (const int failed = renew(s)) {
        tell_shortage(s, failed);
        store(s, old);
        return false;
    }
    for (int i = 0; i < s.planes; ++i) set(n, i, at(s.plane, i).x, at(s.plane, i).y);
    return true;
}

// ---- Script functions

std::int32_t Model::start(std::span<const std::int32_t> a) {
    const auto refuse = [this](std::int32_t code, std::int32_t argument, Int value) {
        return fail(code, "SCROLL_START", argument, value);
    };
    const std::int32_t num = a[0], f = a[1], g1 = a[2], g2 = a[3], area = a[4], flags = a[5];
    const std::int32_t mode = a.size() == 7 ? a[6] : 0;
    if (!in_range(num)) return refuse(107, 1, num);
    const std::int32_t limit = f == 0 ? engine_.files().system_graph_count() : 1000;
    if (f < 0 || f >= engine_.files().file_count()) return refuse(109, 2, f);
    if (g1 < 0 || g1 >= limit) return refuse(110, 3, g1);
    if (g2 < 0 || g2 >= limit) return refuse(110, 4, g2);
    const FileRecord* record = engine_.files().find_file(f);
    if (record == nullptr || record->word2 == 0) return refuse(111, 2, f);
    if (area < -1 || area >= engine_.regions().count()) return refuse(108, 5, area);
    if (area != -1 && !engine_.regions().defined(area)) return refuse(108, 5, area);
    if (mode < 0 || mode > 3) return kFailure;

    Scroll& s = at(scrolls, num);
    const MapRecord* first = bitmap(f, g1);
    const MapRecord* second = bitmap(f, g2);
    if (first == nullptr && second == nullptr) return refuse(112, 3, g1);
    const bool two = first != nullptr && second != nullptr && g2 != 0;
    s.plane[0].graph = first != nullptr ? g1 : g2;
    s.plane[1].graph = two ? g2 : 0;
    if (first == nullptr) first = second;

    if (s.active) {
        release(s);
        delete_processes();
    }
    s.file = f;
    s.flags = flags;
    s.region = area;
    s.mode = mode;
    const MapRecord* on = destination(s);
    View v{0, 0, 0, 0};
    if (on != nullptr) {
        v = asked_view(region(area), *on);
        v.width = std::max<Int>(v.width, 1);
        v.height = std::max<Int>(v.height, 1);
        v = cut(v, *on);
    }
    store(s, v);
    if (v.empty()) return refuse(146, 5, area);

    s.planes = two ? 2 : 1;
    for (int i = 0; i < s.planes; ++i) {
        Plane& p = at(s.plane, i);
        const MapRecord* map = i == 0 ? first : second;
        p.x = map->cpoint_count != 0 ? map->cpoints[0].x : 0;
        p.y = map->cpoint_count != 0 ? map->cpoints[0].y : 0;
        take_map(p, map);
        if (!allocate(buffer_size(s))) return refuse(100, 0, i == 0 ? buffer_size(s) : 0);
        s.made_width = s.width;
        s.made_height = s.height;
        s.made_bytes = bytes();
        if (p.map_width < s.width) s.flags |= 1 << 2 * i;
        if (p.map_height < s.height) s.flags |= 2 << 2 * i;
        set(num, i, p.x, p.y);
    }
    s.shortage_told = false;
    s.active = true;
    Element& e = at(elements, num);
    e[file] = f;
    e[graph1] = s.plane[0].graph;
    e[graph2] = s.plane[1].graph;
    return num;
}

void Model::release(Scroll& s) {
    s.active = false;
    s.made_bytes = 0;
}

void Model::delete_processes() {
    std::erase_if(processes, [this](const auto& process) {
        const std::int32_t mask = process.second[26];
        for (std::int32_t i = 0; i <= kScrollsMax; ++i)
            if (at(scrolls, i).active && shown(mask, i)) return false;
        return true;
    });
}

std::int32_t Model::stop(std::int32_t number) {
    if (refuse_number(number, "SCROLL_STOP", 107)) return kFailure;
    std::int32_t count = 0;
    for (const int i : range(number)) {
        Scroll& s = at(scrolls, i);
        if (s.active) {
            release(s);
            delete_processes();
            ++count;
        }
        at(elements, i) = kDefaults;
    }
    return count;
}

void Model::stop_service(std::int32_t number) {
    if (!in_range(number)) return;
    release(at(scrolls, number));
    at(elements, number) = kDefaults;
    delete_processes();
}

void Model::stop_all_service() {
    for (Scroll& s : scrolls) release(s);
    elements.fill(kDefaults);
    delete_processes();
}

std::int32_t Model::move(std::int32_t number) {
    if (refuse_number(number, "SCROLL_MOVE", 107)) return kFailure;
    std::int32_t count = 0;
    for (const int i : range(number)) {
        Scroll& s = at(scrolls, i);
        if (!s.active) continue;
        const Maps maps = look_up_maps(s);
        if (maps == Maps::gone) return 0;
        if (maps == Maps::too_small) continue;
        make_fit(s);
        move_scroll(i);
        ++count;
    }
    return count;
}

bool Model::refresh_scroll(int n) {
    Scroll& s = at(scrolls, n);
    Element& e = at(elements, n);
    if (e[file] != s.file) {
        if (e[file] < 0 || e[file] > engine_.files().file_count()) return false;
        if (engine_.files().find_file(e[file]) == nullptr) return false;
        s.file = e[file];
    }
    for (int i = 0; i < s.planes; ++i) {
        Plane& p = at(s.plane, i);
        std::int32_t& wanted = e[i == 0 ? graph1 : graph2];
        if (wanted > 0) p.graph = wanted;
        const MapRecord* map = bitmap(s.file, p.graph);
        if (map == nullptr) return false;
        take_map(p, map);
        set(n, i, p.x, p.y);
        wanted = p.graph;
    }
    if (!fits(s)) {
        make_fit(s);
        mirror(n);
    }
    return true;
}

std::int32_t Model::refresh(std::int32_t number) {
    if (refuse_number(number, "SCROLL_REFRESH", 107)) return kFailure;
    std::int32_t count = 0;
    for (const int i : range(number)) {
        if (!at(scrolls, i).active) continue;
        if (!refresh_scroll(i)) return 0;
        ++count;
    }
    return count;
}

std::int32_t Model::set_destination(std::int32_t number, std::int32_t f, std::int32_t graph,
                                    std::int32_t area) {
    const auto refuse = [this](std::int32_t code, std::int32_t argument, std::int32_t value) {
        return fail(code, "SCROLL_SET_DESTINATION", argument, value);
    };
    if (refuse_number(number, "SCROLL_SET_DESTINATION", 131)) return kFailure;
    if (f < 0 || f >= engine_.files().file_count()) return refuse(109, 2, f);
    if (graph < 0 || graph >= engine_.files().system_graph_count()) return refuse(110, 3, graph);
    if (area < -1 || area >= engine_.regions().count()) return refuse(108, 4, area);
    if (area != -1 && !engine_.regions().defined(area)) return refuse(108, 4, area);

    const MapRecord* on = f == 0 && graph == 0 ? engine_.graphics().ScreenMap : bitmap(f, graph);
    if (on == nullptr || (graph == 0 && f != 0)) return 0;
    const View v = cut(asked_view(region(area), *on), *on);
    std::int32_t count = 0;
    for (const int i : range(number)) {
        Scroll& s = at(scrolls, i);
        const Scroll before = s;
        if (!v.empty()) {
            store(s, v);
            s.dest_file = f;
            s.dest_graph = graph;
            s.region = area;
        }
        if (s.active && !view(s).empty()) {
            if (renew(s) != 0) {
                s = before;
                return refuse(100, 0, 0);
            }
            if (look_up_maps(s) != Maps::ready) s.made_bytes = 0;
            for (int p = 0; p < s.planes; ++p) set(i, p, at(s.plane, p).x, at(s.plane, p).y);
        }
        if (!v.empty()) ++count;
    }
    return count;
}

// ---- Movement

void Model::move_scroll(int n) {
    Scroll& s = at(scrolls, n);
    Element& e = at(elements, n);
    s.alpha = e[alpha] = std::clamp(e[alpha], 0, 255);
    if (e[camera] != 0) {
        const ProcessLocals* process = engine_.processes().find(e[camera]);
        if (process != nullptr && destination(s) != nullptr) follow_camera(n, *process);
        return;
    }
    const Plane& front = s.plane[0];
    const Plane& back = s.plane[1];
    if (e[x0] != front.x || e[y0] != front.y) shift(n, 0, e[x0] - front.x, e[y0] - front.y);
    if (s.planes == 2 && (e[x1] != back.x || e[y1] != back.y)) shift(n, 1, e[x1] - back.x, e[y1] - back.y);
}

// One axis: `at` is the camera on the destination, `centred` the movement that centres it.
static Int axis_movement(Int at, Int centred, const std::int32_t* inner_low, const std::int32_t* inner_high,
                         const std::int32_t* outer_low, const std::int32_t* outer_high, Int extent,
                         Int speed) {
    Int d = centred;
    if (inner_low != nullptr) {
        const Int low = std::max<Int>(*inner_low, 0);
        const Int high = std::min<Int>(*inner_high, extent - 1);
        d = at < low ? at - low : 0;
        if (at > high) d = at - high;
    }
    if (outer_low != nullptr) {
        const Int low = std::max<Int>(*outer_low, 0);
        const Int high = std::min<Int>(*outer_high, extent - 1);
        if (at < low)
            d = at - low;
        else if (at > high)
            d = at - high;
        else if (speed > 0)
            d = std::clamp(d, -speed, speed);
    }
    return d;
}

void Model::follow_camera(int n, const ProcessLocals& c) {
    Scroll& s = at(scrolls, n);
    const Element& e = at(elements, n);
    const MapRecord& on = *destination(s);
    const Int divisor = std::max(c.resolution, 1);
    const Int x = c.x / divisor;
    const Int y = c.y / divisor;
    const Int old_x = s.plane[0].x;
    const Int old_y = s.plane[0].y;
    const auto follow = [&](std::int32_t number) {
        return static_cast<std::uint32_t>(number) <= 65536 ? region(number) : nullptr;
    };
    const __RVKRegion__* inner = follow(e[region1]);
    const __RVKRegion__* outer = follow(e[region2]);
    const auto edge = [](const __RVKRegion__* r, std::int32_t __RVKRegion__::*which) {
        return r != nullptr ? &(r->*which) : nullptr;
    };
    using R = __RVKRegion__;
    const Int dx =
        axis_movement(s.dest_x + x - old_x, x - (s.width >> 1) - old_x, edge(inner, &R::x),
                      edge(inner, &R::x2), edge(outer, &R::x), edge(outer, &R::x2), on.width, e[speed]);
    const Int dy =
        axis_movement(s.dest_y + y - old_y, y - (s.height >> 1) - old_y, edge(inner, &R::y),
                      edge(inner, &R::y2), edge(outer, &R::y), edge(outer, &R::y2), on.height, e[speed]);
    shift(n, 0, dx, dy);
    if (s.planes == 2 && e[ratio] != 0)
        shift(n, 1, (s.plane[0].x - old_x) * 100 / e[ratio], (s.plane[0].y - old_y) * 100 / e[ratio]);
}

// ---- Frames

std::vector<Entry> Model::schedule() {
    std::vector<Entry> list;
    for (std::int32_t n = kScrollsMax; n >= 0; --n) {
        const Scroll& s = at(scrolls, n);
        const Element& e = at(elements, n);
        if (e[visible] <= 0 || !s.active || destination(s) == nullptr) continue;
        Entry& entry = list.emplace_back(blank_entry());
        entry[0] = n;
        entry[1] = 0;
        entry[3] = wrap(s.dest_x);
        entry[4] = wrap(s.dest_x + s.width - 1);
        entry[5] = wrap(s.dest_y);
        entry[6] = wrap(s.dest_y + s.height - 1);
        entry[14] = e[z];
        entry[36] = 0;
    }
    return list;
}

std::int32_t Model::blit(std::int32_t n, std::int32_t entry_z) {
    if (!in_range(n)) return 0;
    Scroll& s = at(scrolls, n);
    if (!s.active || look_up_maps(s) != Maps::ready || destination(s) == nullptr) return 0;
    if (!bring_view_up_to_date(n)) return 0;
    painted = {{destination(s), pixels.at(destination(s))}};
    move_scroll(n);
    draw_planes(s);
    draw_sprites(n, entry_z);
    return 1;
}

Look Model::look(const Scroll& s) const {
    return {static_cast<int>(bytes()), s.mode, s.alpha, s.plane[0].alpha_flag, s.plane[1].alpha_flag};
}

// Lays rule(D, front pixel, back pixel) over the view; there is no back pixel with one plane.
template <class Rule>
void Model::draw(Scroll& s, Rule rule) {
    const MapRecord* on = destination(s);
    for (Int r = 0; r < s.height; ++r)
        for (Int c = 0; c < s.width; ++c) {
            const Int i = r * s.width + c;
            const Int place = (s.dest_y + r) * on->width + s.dest_x + c;
            const Pixel back = s.planes == 2 ? at(s.plane[1].picture, i) : 0;
            set_pixel(on, place, rule(look(s), pixel(on, place), at(s.plane[0].picture, i), back));
        }
}

void Model::draw_planes(Scroll& s) {
    const bool layers = s.mode == 1 || s.mode == 3;
    if (s.planes == 1 && s.mode == 0)
        draw(s, [](Look l, Pixel d, Pixel f, Pixel) { return single(l, d, f); });
    if (s.planes == 1 && s.mode == 2)
        draw(s, [](Look l, Pixel d, Pixel f, Pixel) { return front_layer(l, d, f); });
    if (s.planes == 2 && layers) draw(s, [](Look l, Pixel d, Pixel, Pixel b) { return back_layer(l, d, b); });
    if (s.planes == 2 && !layers) draw(s, two_planes);
}

void Model::draw_sprites(int n, std::int32_t entry_z) {
    Scroll& s = at(scrolls, n);
    std::vector<Entry> list;
    if (s.mode == 1 || s.mode == 3) {
        list.push_back(blank_entry());
        list.back()[14] = entry_z;
    }
    for (auto& [id, p] : processes) {
        Entry entry = blank_entry();
        entry[1] = id;
        if (collect(n, p, entry)) list.push_back(entry);
    }
    if (list.empty()) return;
    std::stable_sort(list.begin(), list.end(), [](const Entry& a, const Entry& b) { return a[14] > b[14]; });
    for (const Entry& entry : list) {
        if (entry[44] == 0)
            draw(s, [](Look l, Pixel d, Pixel f, Pixel) { return front_layer(l, d, f); });
        else
            sprite_(entry, surface(reinterpret_cast<const MapRecord*>(entry[42])), surface(destination(s)));
    }
    sprite_passes.push_back(std::move(list));
}

// Fills the entry of a process that the scroll shows. False: it is not drawn.
bool Model::collect(int n, Locals& p, Entry& entry) {
    if (p[4] != 2 && p[4] < 4) return false;
    if (!shown(p[26], n) || p[33] <= 0) return false;
    if (p[27] < 0 || p[27] >= engine_.files().file_count()) return false;
    if (p[29] != 0) {
        const auto* table = reinterpret_cast<const std::int32_t*>(p[29]);
        const Int count = table[0];
        if (count < 1 || count > 256) return false;
        while (p[39] > 359999) p[39] -= 360000;
        while (p[39] < 0) p[39] += 360000;
        p[45] &= 0xFE;
        Int i = (360000 / (2 * count) + p[39]) * count / 360000;
        if (i >= count) i = 0;
        const Int code = table[1 + i];
        p[28] = wrap(code < 0 ? -code : code);
        if (code < 0) p[45] |= 1;
    }
    p[9] = 1;
    const std::int32_t limit = p[27] == 0 ? engine_.files().system_graph_count() : 1000;
    if (p[28] <= 0 || p[28] >= limit) return false;
    const FileRecord* owner = engine_.files().find_file(p[27]);
    host::Map* map = engine_.files().find_map(p[27], p[28]);
    if (owner == nullptr || owner->word1 == 0 || map == nullptr || map->entry().word0 == 0) return false;
    const MapRecord* graphic = map->entry().bitmap;  // with pixels or without: that is the host's matter
    if (graphic == nullptr) return false;

    const Scroll& s = at(scrolls, n);
    const Int right = s.dest_x + s.width - 1;
    const Int bottom = s.dest_y + s.height - 1;
    const Int to_x = s.dest_x - s.plane[0].x;
    const Int to_y = s.dest_y - s.plane[0].y;
    const Int divisor = std::max(p[35], 1);
    const __RVKRegion__* clip = p[34] >= 1 && engine_.regions().defined(p[34]) ? region(p[34]) : nullptr;
    entry[11] = p[29];
    entry[12] = wrap(p[30] / divisor + to_x);
    entry[13] = wrap(p[31] / divisor + to_y);
    entry[14] = p[32];
    entry[16] = p[34];
    entry[17] = p[35];
    entry[20] = p[38];
    entry[21] = p[39] % 360000;
    for (std::size_t i = 22; i <= 24; ++i) entry[i] = p[i + 18];
    entry[25] = p[43];
    entry[26] = p[44];
    entry[27] = p[45];
    for (std::size_t i = 28; i <= 31; ++i) entry[i] = p[i + 18];
    entry[36] = 1;
    entry[37] = saturate(clip != nullptr ? std::max(s.dest_x, clip->x + to_x) : s.dest_x);
    entry[38] = saturate(clip != nullptr ? std::min(right, clip->x2 + to_x) : right);
    entry[39] = saturate(clip != nullptr ? std::max(s.dest_y, clip->y + to_y) : s.dest_y);
    entry[40] = saturate(clip != nullptr ? std::min(bottom, clip->y2 + to_y) : bottom);
    entry[42] = address(graphic);
    entry[43] = address(destination(s));

    const Graphics2DInterface& g = engine_.graphics();
    const bool rotated = entry[21] != 0 && p[29] == 0;
    const bool unscaled = p[40] == 100 && p[41] == 100 && p[42] == 100;
    const bool plain = p[43] == 0 && p[44] == 0;
    const BlitRoutine routine = !plain     ? (rotated ? g.BlitSpriteRotatedGeneral : g.BlitSpriteGeneral)
                                : unscaled ? (rotated ? g.BlitSpriteRotated : g.BlitSprite)
                                           : (rotated ? g.BlitSpriteRotatedScaled : g.BlitSpriteScaled);
    entry[44] = static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(routine));
    return true;
}

// ---- Services

Model::Answer Model::scroll_region(std::int32_t n, std::int32_t mask, Int x, Int y, Int w, Int h) const {
    if (!process_in_scroll(n, mask)) return {};
    const Scroll& s = at(scrolls, n);
    const Int left = x + s.dest_x - s.plane[0].x;
    const Int top = y + s.dest_y - s.plane[0].y;
    return {wrap(left), wrap(left + w - 1), wrap(top), wrap(top + h - 1)};
}
Model::Answer Model::scroll_point(std::int32_t n, std::int32_t mask) const {
    if (!process_in_scroll(n, mask)) return {};
    const Scroll& s = at(scrolls, n);
    return {wrap(s.dest_x - s.plane[0].x), wrap(s.dest_y - s.plane[0].y)};
}
Model::Answer Model::scroll_pos(std::int32_t n, std::int32_t mask) const {
    if (!process_in_scroll(n, mask)) return {};
    const Scroll& s = at(scrolls, n);
    return {wrap(s.plane[0].x), wrap(s.plane[0].y), wrap(s.plane[1].x), wrap(s.plane[1].y)};
}
bool Model::process_in_scroll(std::int32_t n, std::int32_t mask) const {
    return in_range(n) && at(scrolls, n).active && shown(mask, n);
}
bool Model::process_out_of_scroll(std::int32_t n, std::int32_t mask) {
    return in_range(n) && !shown(mask, n);
}

}  // namespace model
