// Video mode, regions, background, text, keyboard, and the game itself.
#include "player/game/text.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

int set_mode(lua_State* L) {
    game_of(L).set_mode(integer_argument(L, 1), integer_argument(L, 2), integer_argument(L, 3),
                        lua_toboolean(L, 4) != 0);
    return Script::of(L).return_or_end_turn(L, 0);
}

int screen_size(lua_State* L) {
    Game& game = game_of(L);
    lua_pushinteger(L, game.engine.screen().width());
    lua_pushinteger(L, game.engine.screen().height());
    lua_pushinteger(L, game.bits_per_pixel());
    return 3;
}

int background(lua_State* L) {
    Game& game = game_of(L);
    if (lua_isnoneornil(L, 1)) {
        game.set_background(Rgba{0, 0, 0, 255});
    } else if (lua_type(L, 1) == LUA_TSTRING && *lua_tostring(L, 1) != '#') {
        game.set_background(game.read_picture(lua_tostring(L, 1)));
    } else {
        Rgba colour =
            host::from_pixel(pixel_argument(L, 1), game.bits_per_pixel(), game.engine.palette(), false);
        game.set_background(colour);
    }
    return 0;
}

int define_region(lua_State* L) {
    const int number = ranged_argument(L, 1, 1, number_of_regions - 1);
    const std::int32_t x = integer_argument(L, 2), y = integer_argument(L, 3);
    const int w = ranged_argument(L, 4, 1, 1 << 20), h = ranged_argument(L, 5, 1, 1 << 20);
    if (x > INT32_MAX - w || y > INT32_MAX - h) throw Mistake("the region's far edge does not fit 32 bits");
    game_of(L).engine.regions().define(number, x, y, x + w - 1, y + h - 1);
    return 0;
}

int undefine_region(lua_State* L) {
    game_of(L).engine.regions().undefine(ranged_argument(L, 1, 1, number_of_regions - 1));
    return 0;
}

int text(lua_State* L) {
    game_of(L).add_text(integer_argument(L, 1), integer_argument(L, 2), drawn_text_argument(L, 3),
                        pixel_argument(L, 4, "#ffffff"), ranged_argument(L, 5, 1, largest_text_scale, 1));
    return 0;
}

int measure_text(lua_State* L) {
    const TextSize size =
        text_size(drawn_text_argument(L, 1), ranged_argument(L, 2, 1, largest_text_scale, 1));
    return push_pair(L, size.width, size.height);
}

int scroll_offset(lua_State* L) {
    const ScrollSystemInterface* services = game_of(L).engine.services();
    __RVKPoint2D__ offset{};
    if (!services || !services->GetScrollPoint(integer_argument(L, 1), 0, &offset)) return push_nil(L);
    return push_pair(L, offset.x, offset.y);
}

int suspend(lua_State* L) {
    game_of(L).engine.set_suspended(lua_toboolean(L, 1) != 0);
    return 0;
}

int shot(lua_State* L) {
    game_of(L).request_shot(text_argument(L, 1), place_in_script(L, 1));
    return 0;
}

int frame_number(lua_State* L) {
    lua_pushinteger(L, game_of(L).frames_drawn);
    return 1;
}

int quit(lua_State* L) {
    Game& game = game_of(L);
    game.exit_status = ranged_argument(L, 1, 0, 255, 0);
    game.over = true;
    return 0;
}

int key(lua_State* L) {
    lua_pushboolean(L, game_of(L).keys.down(text_argument(L, 1)));
    return 1;
}

int press(lua_State* L) {
    game_of(L).keys.play(text_argument(L, 1), true);
    return 0;
}

int release(lua_State* L) {
    game_of(L).keys.play(text_argument(L, 1), false);
    return 0;
}

constexpr Binding bindings[] = {
    {"set_mode", 3, 4, set_mode},
    {"screen_size", 0, 0, screen_size},
    {"background", 0, 1, background},
    {"define_region", 5, 5, define_region},
    {"undefine_region", 1, 1, undefine_region},
    {"text", 3, 5, text},
    {"text_size", 1, 2, measure_text},
    {"scroll_offset", 1, 1, scroll_offset},
    {"suspend", 1, 1, suspend},
    {"shot", 1, 1, shot},
    {"frame_number", 0, 0, frame_number},
    {"quit", 0, 1, quit},
    {"key", 1, 1, key},
    {"press", 1, 1, press},
    {"release", 1, 1, release},
};

}  // namespace

void bind_screen(lua_State* L) {
    bind(L, bindings);
}

}  // namespace player
