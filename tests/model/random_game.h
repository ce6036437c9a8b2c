// A whole game told by bytes: a script and a host that do everything they may, sensible or wild, to a screen,
// files of maps, regions, processes and ten scrolls, the model beside.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "tests/model/lockstep.h"

namespace model {

// What only a module that shows its records can be asked for.
struct Variant {
    scroll2d::VectorUnit widest = scroll2d::any_unit;
    scroll2d::Asking asking = scroll2d::Asking::where_calm;
    const InterruptedSlot* interrupted = nullptr;  // Lockstep::interrupt
    std::uint32_t seed = 0;                        // of the interruptions
};

// Plays until the bytes are used up. Any bytes make a game, and the same bytes the same game. Throws
// Mismatch.
void play_game(std::span<const std::uint8_t> bytes, const std::filesystem::path& module,
               const Variant& variant = {});

}  // namespace model
