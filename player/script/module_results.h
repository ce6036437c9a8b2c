// What module functions return without a word of their own.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "player/game/game.h"

namespace player {

// After a call that reported no error. Throws Mistake when it failed nevertheless; warns, once for each
// place, when it did nothing.
void judge_result(Game& game, const std::string& function, std::span<const std::int32_t> arguments,
                  std::int32_t result, const std::string& place);

}  // namespace player
