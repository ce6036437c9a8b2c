// Random games: the module and the model must agree after every step. A failure names its seed; the game of
// one seed is played alone with SCROLL2D_SEED=seed; SCROLL2D_EFFORT=20 plays a fifth of the games.
#include <doctest/doctest.h>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/crash.h"
#include "tests/effort.h"
#include "tests/model/random_game.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int kGames = 150;
#else
constexpr int kGames = 1000;
#endif

std::vector<std::uint8_t> game_of(std::uint32_t seed, std::uint32_t longest = 3500) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(500 + random() % (longest - 500));
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    return bytes;
}

// Most games go to the finished file. Every fourth one looks into the module's records as well, and has one
// of the module's loops after the other.
void play(std::uint32_t seed) {
    CAPTURE(seed);
    tests::note_for_crash("SCROLL2D_SEED=" + std::to_string(seed));
    if (seed % 4 != 0)
        REQUIRE_NOTHROW(model::play_game(game_of(seed), model::module_path(SCROLL2D_MODULE)));
    else
        REQUIRE_NOTHROW(
            model::play_game(game_of(seed), SCROLL2D_OPENED_MODULE,
                             {.widest = scroll2d::vector_units[seed / 4 % std::size(scroll2d::vector_units)],
                              .asking = static_cast<scroll2d::Asking>(seed / 12 % 3)}));
}

TEST_CASE("the module plays as the model does") {
    if (const char* seed = std::getenv("SCROLL2D_SEED"))
        return play(static_cast<std::uint32_t>(std::atol(seed)));
    const int games = tests::rounds(kGames);
    for (int seed = 1; seed <= games; ++seed) play(static_cast<std::uint32_t>(seed));
}

TEST_CASE("scrolls that the host stops from within a slot cost nobody else anything") {
    const int games = tests::rounds(200);
    for (const model::InterruptedSlot& slot : model::kInterruptedSlots)
        for (std::uint32_t seed = 1; seed <= static_cast<std::uint32_t>(games); ++seed) {
            const std::string game = "game " + std::to_string(seed) + " with stops from " + slot.name;
            CAPTURE(game);
            tests::note_for_crash(game);
            REQUIRE_NOTHROW(model::play_game(game_of(seed, 1000), SCROLL2D_OPENED_MODULE,
                                             {.interrupted = &slot, .seed = seed}));
        }
}

}  // namespace
