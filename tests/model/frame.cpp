// A scroll's frame: it is scheduled, moved and drawn, and its sprites with it.
#include <algorithm>

#include "tests/model/model.h"
#include "tests/model/numbers.h"
#include "tests/model/routines.h"

namespace model {

namespace {

Entry blank_entry() {
    Entry entry;
    for (std::size_t i = 0; i < entry.size(); ++i)
        entry[i] = static_cast<std::int32_t>(host::pattern_word(i));
    entry[2] = 0;
    entry[44] = 0;
    return entry;
}

}  // namespace

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
        if (entry[44] == 0) {
            if (s.active) draw(s, [](Look l, Pixel d, Pixel f, Pixel) { return front_layer(l, d, f); });
            continue;
        }
        stamp(entry, surface(reinterpret_cast<const MapRecord*>(entry[42])), surface(destination(s)));
        if (entry[31] == kStopsScroll) stop_service(entry[30]);
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

// ---- Movement

void Model::move_scroll(int n) {
    Scroll& s = at(scrolls, n);
    Element& e = at(elements, n);
    s.alpha = e[alpha] = std::clamp(e[alpha], 0, 255);
    if (e[camera] != 0) {
        const ProcessLocals* process = engine_.processes().find(e[camera]);
        if (process != nullptr) follow_camera(n, *process);
        return;
    }
    const Plane& front = s.plane[0];
    const Plane& back = s.plane[1];
    if (e[x0] != front.x || e[y0] != front.y) shift(n, 0, e[x0] - front.x, e[y0] - front.y);
    if (s.planes == 2 && (e[x1] != back.x || e[y1] != back.y)) shift(n, 1, e[x1] - back.x, e[y1] - back.y);
}

// One axis: `at` is the camera on the destination, `centred` the movement that centres it.
struct Axis {
    Int at, centred, extent, speed;
    std::int32_t __RVKRegion__::*low_edge;
    std::int32_t __RVKRegion__::*high_edge;

    [[nodiscard]] Int movement(const __RVKRegion__* inner, const __RVKRegion__* outer) const {
        const auto low = [&](const __RVKRegion__* r) { return std::max<Int>(r->*low_edge, 0); };
        const auto high = [&](const __RVKRegion__* r) { return std::min<Int>(r->*high_edge, extent - 1); };
        Int d = centred;
        if (inner != nullptr) {
            d = at < low(inner) ? at - low(inner) : 0;
            if (at > high(inner)) d = at - high(inner);
        }
        if (outer == nullptr) return d;
        if (at < low(outer)) return at - low(outer);
        if (at > high(outer)) return at - high(outer);
        return speed > 0 ? std::clamp(d, -speed, speed) : d;
    }
};

void Model::follow_camera(int n, const ProcessLocals& c) {
    Scroll& s = at(scrolls, n);
    const Element& e = at(elements, n);
    const MapRecord* on = destination(s);
    const Int on_width = on != nullptr ? on->width : s.dest_x + s.width;
    const Int on_height = on != nullptr ? on->height : s.dest_y + s.height;
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
    using R = __RVKRegion__;
    const Axis across{s.dest_x + x - old_x, x - (s.width >> 1) - old_x, on_width, e[speed], &R::x, &R::x2};
    const Axis down{s.dest_y + y - old_y, y - (s.height >> 1) - old_y, on_height, e[speed], &R::y, &R::y2};
    shift(n, 0, across.movement(inner, outer), down.movement(inner, outer));
    if (s.planes == 2 && e[ratio] != 0)
        shift(n, 1, (s.plane[0].x - old_x) * 100 / e[ratio], (s.plane[0].y - old_y) * 100 / e[ratio]);
}

}  // namespace model
