// The script functions, and how scrolls stop.
#include <algorithm>

#include "tests/model/model.h"
#include "tests/model/numbers.h"

namespace model {

namespace {

// The scrolls of a script's number.
std::vector<int> range(std::int32_t number) {
    if (number == -1) return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    return {number};
}

}  // namespace

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
    s.shortage_told.reset();
    s.active = true;
    Element& e = at(elements, num);
    e[file] = f;
    e[graph1] = s.plane[0].graph;
    e[graph2] = s.plane[1].graph;
    return num;
}

void Model::release(Scroll& s) {
    if (!s.active) return;
    s.active = false;
    s.made_bytes = 0;
    for (Plane& p : s.plane) p.map_pixels = nullptr;
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

    const MapRecord* on = f == 0 && graph == 0 ? screen() : bitmap(f, graph);
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

}  // namespace model
