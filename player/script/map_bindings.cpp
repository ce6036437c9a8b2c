// Maps, drawing into them, colours.
#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "player/game/text.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

constexpr int farthest = 32767;  // pixels; bounds the length of a line

host::Map& map_argument(lua_State* L) {
    return game_of(L).map_at(integer_argument(L, 1), integer_argument(L, 2));
}

int push_size(lua_State* L, const host::Bitmap& bitmap) {
    return push_pair(L, bitmap.width(), bitmap.height());
}

int load_map(lua_State* L) {
    std::optional<Game::Part> part;
    if (!lua_isnone(L, 4)) {
        if (lua_isnone(L, 7)) throw Mistake("a part of the picture takes four numbers: x, y, width, height");
        part = {integer_argument(L, 4), integer_argument(L, 5), integer_argument(L, 6),
                integer_argument(L, 7)};
    }
    return push_size(
        L, game_of(L).load_map(integer_argument(L, 1), integer_argument(L, 2), text_argument(L, 3), part));
}

int new_map(lua_State* L) {
    const std::uint32_t pixel = pixel_argument(L, 5, "#00000000");
    game_of(L).new_map(integer_argument(L, 1), integer_argument(L, 2), integer_argument(L, 3),
                       integer_argument(L, 4), pixel);
    return 0;
}

int unload_map(lua_State* L) {
    Game& game = game_of(L);
    const int file = integer_argument(L, 1), graph = integer_argument(L, 2);
    game.mistakes.note_unloading(file, graph, place_in_script(L, 1));
    game.unload_map(file, graph);
    return 0;
}

int save_map(lua_State* L) {
    game_of(L).save_map(integer_argument(L, 1), integer_argument(L, 2), text_argument(L, 3));
    return 0;
}

int map_size(lua_State* L) {
    const host::Map* map = game_of(L).engine.files().find_map(integer_argument(L, 1), integer_argument(L, 2));
    return map ? push_size(L, *map) : push_nil(L);
}

int set_alpha(lua_State* L) {
    map_argument(L).set_alpha_flag(lua_toboolean(L, 3) != 0);
    return 0;
}

int set_point(lua_State* L) {
    game_of(L).set_control_point(integer_argument(L, 1), integer_argument(L, 2), integer_argument(L, 3),
                                 integer_argument(L, 4), integer_argument(L, 5));
    return 0;
}

int get_point(lua_State* L) {
    const MapRecord& record = map_argument(L).record();
    const int number = integer_argument(L, 3);
    if (number < 0 || number >= record.cpoint_count) return push_nil(L);
    return push_pair(L, record.cpoints[number].x, record.cpoints[number].y);
}

int pixel(lua_State* L) {
    host::Map& map = map_argument(L);
    const int x = integer_argument(L, 3), y = integer_argument(L, 4);
    const bool inside = x >= 0 && y >= 0 && x < map.width() && y < map.height();
    if (!lua_isnone(L, 5)) {
        const std::uint32_t value = pixel_argument(L, 5);
        if (inside) map.set_pixel(x, y, value);
        return 0;
    }
    if (!inside) return push_nil(L);
    lua_pushinteger(L, map.pixel(x, y));
    return 1;
}

int box(lua_State* L) {
    draw_box(map_argument(L), integer_argument(L, 3), integer_argument(L, 4), integer_argument(L, 5),
             integer_argument(L, 6), pixel_argument(L, 7));
    return 0;
}

int line(lua_State* L) {
    host::Map& map = map_argument(L);
    int place[4];
    for (int i = 0; i < 4; ++i) place[i] = ranged_argument(L, 3 + i, -farthest, farthest);
    const std::uint32_t value = pixel_argument(L, 7);
    const int dx = place[2] - place[0], dy = place[3] - place[1];
    const int steps = std::max({std::abs(dx), std::abs(dy), 1});
    for (int i = 0; i <= steps; ++i) {
        // Rounded to the nearest pixel, the same from either end of the step.
        const auto along = [i, steps](int from, int by) {
            const std::int64_t twice = 2 * std::int64_t{by} * i;
            return from +
                   static_cast<int>((twice + (twice < 0 ? -steps : steps)) / (2 * std::int64_t{steps}));
        };
        draw_box(map, along(place[0], dx), along(place[1], dy), 1, 1, value);
    }
    return 0;
}

int map_text(lua_State* L) {
    draw_text(map_argument(L), integer_argument(L, 3), integer_argument(L, 4), drawn_text_argument(L, 5),
              pixel_argument(L, 6, "#ffffff"), ranged_argument(L, 7, 1, largest_text_scale, 1));
    return 0;
}

std::uint8_t channel_argument(lua_State* L, int index, int fallback) {
    return static_cast<std::uint8_t>(ranged_argument(L, index, 0, 255, fallback));
}

int rgb(lua_State* L) {
    const Rgba colour{channel_argument(L, 1, 0), channel_argument(L, 2, 0), channel_argument(L, 3, 0),
                      channel_argument(L, 4, 255)};
    lua_pushinteger(L, game_of(L).pixel_of(colour));
    return 1;
}

int to_rgb(lua_State* L) {
    Game& game = game_of(L);
    const Rgba colour =
        host::from_pixel(pixel_argument(L, 1), game.bits_per_pixel(), game.engine.palette(), true);
    for (const int channel : {colour.r, colour.g, colour.b, colour.a}) lua_pushinteger(L, channel);
    return 4;
}

int set_palette(lua_State* L) {
    std::vector<Rgba> colours;
    if (lua_istable(L, 1)) {
        const lua_Integer count = luaL_len(L, 1);
        if (count > Game::most_colours) throw Mistake("a palette has 256 colours at most");
        for (lua_Integer i = 1; i <= count; ++i) {
            if (lua_geti(L, 1, i) != LUA_TSTRING) refuse(L, -1, "colour " + std::to_string(i), "a text");
            colours.push_back(parse_colour(lua_tostring(L, -1)));
            lua_pop(L, 1);
        }
    } else {
        const std::string path = text_argument(L, 1);
        const Picture picture = game_of(L).read_picture(path);
        if (!picture.indexed()) throw Mistake(path + " has no palette");
        colours.assign(picture.palette.begin(), picture.palette.end());
    }
    game_of(L).set_palette(colours);
    return 0;
}

constexpr Binding bindings[] = {
    {"load_map", 3, 7, load_map},
    {"new_map", 4, 5, new_map},
    {"unload_map", 2, 2, unload_map},
    {"save_map", 3, 3, save_map},
    {"map_size", 2, 2, map_size},
    {"set_alpha", 3, 3, set_alpha},
    {"set_point", 5, 5, set_point},
    {"get_point", 3, 3, get_point},
    {"pixel", 4, 5, pixel},
    {"box", 7, 7, box},
    {"line", 7, 7, line},
    {"map_text", 5, 7, map_text},
    {"rgb", 3, 4, rgb},
    {"to_rgb", 1, 1, to_rgb},
    {"set_palette", 1, 1, set_palette},
};

}  // namespace

void bind_maps(lua_State* L) {
    bind(L, bindings);
}

}  // namespace player
