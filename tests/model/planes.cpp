// Planes and views: what is shown, from where, and when it is made anew.
#include <algorithm>
#include <cstdlib>

#include "tests/model/model.h"
#include "tests/model/numbers.h"

namespace model {

namespace {

Int floor_mod(Int a, Int m) {
    return (a % m + m) % m;
}

}  // namespace

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
        take_pixels(p, map);
    }
    return too_small ? Maps::too_small : Maps::ready;
}

void Model::take_pixels(Plane& p, const MapRecord* map) {
    p.map = map;
    p.map_pixels = map->pixels;
    p.alpha_flag = map->alpha_flag != 0;
}

void Model::take_map(Plane& p, const MapRecord* map) {
    take_pixels(p, map);
    p.map_width = map->width;
    p.map_height = map->height;
}

// ---- Views and buffers

Model::View Model::asked_view(const __RVKRegion__* r, const MapRecord& on) {
    if (r == nullptr) return {0, 0, on.width, on.height};
    const Int x = std::max(r->x, 0);
    const Int y = std::max(r->y, 0);
    return {x, y, Int{r->x2} - x + 1, Int{r->y2} - y + 1};
}
Model::View Model::cut(View v, const MapRecord& on) {
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
    s.shortage_told.reset();
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
    const Int wanted = buffer_size(s);
    if (s.shortage_told != wanted) fail(100, "RVK_mod_scroll2D", 0, failed_plane == 1 ? wanted : 0);
    s.shortage_told = wanted;
}

bool Model::bring_view_up_to_date(int n) {
    Scroll& s = at(scrolls, n);
    if (s.region != -1 && region(s.region) == nullptr) return false;
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
        s.shortage_told.reset();
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

}  // namespace model
