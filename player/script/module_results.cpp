#include "player/script/module_results.h"

#include <limits>

#include "module/contract/script_numbers.h"
#include "player/game/scrolls.h"
#include "player/script/lua_support.h"

namespace player {
namespace {

using Arguments = std::span<const std::int32_t>;

constexpr std::int32_t failure = std::numeric_limits<std::int32_t>::min();

std::string why_failed(const std::string& function, Arguments arguments) {
    constexpr std::size_t with_mode = 7;
    const bool starts = function == "scroll_start" || function == "start_scroll";
    if (!starts || arguments.size() != with_mode) return "it failed, and the module does not say why";
    return "argument 7: there is no mode " + std::to_string(arguments[with_mode - 1]) + ": modes are 0 to " +
           std::to_string(scroll2d::scroll_layers_key) +
           " (scroll_normal, scroll_layers, scroll_normal_key, scroll_layers_key)";
}

// Which of the scrolls that a call is about do not run; "" when one of them does.
std::string idle(Game& game, std::int32_t number) {
    const auto running = running_scrolls(game.engine);
    if (number == scroll2d::all_scroll) return running.empty() ? "no scroll is running" : "";
    return running.contains(number) ? "" : "scroll " + std::to_string(number) + " is not running";
}

std::string why_not_refreshed(Game& game, Arguments arguments) {
    const std::string why = idle(game, arguments[0]);
    return why.empty() ? "a map that its fields name does not exist" : why;
}

std::string why_not_aimed(Game& game, Arguments arguments) {
    const std::int32_t file = arguments[1], graph = arguments[2];
    if ((file != 0 || graph != 0) && game.engine.files().find_map(file, graph) == nullptr)
        return without_map(game.engine, file, graph);
    return "region " + std::to_string(arguments[3]) + " lies outside the destination";
}

}  // namespace

void judge_result(Game& game, const std::string& function, Arguments arguments, std::int32_t result,
                  const std::string& place) {
    if (result == failure) throw Mistake(function + ": " + why_failed(function, arguments));
    if (result != 0) return;
    std::string why;
    if (function == "scroll_refresh" || function == "refresh_scroll")
        why = why_not_refreshed(game, arguments);
    else if (function == "scroll_set_destination")
        why = why_not_aimed(game, arguments);
    if (!why.empty()) game.mistakes.warn(place + function + " did nothing: " + why, place + function);
}

}  // namespace player
