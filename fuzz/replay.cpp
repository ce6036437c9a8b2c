// Replays the games that fuzzing has found worth keeping.
#include <doctest/doctest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/crash.h"
#include "tests/model/random_game.h"

namespace {

std::vector<std::uint8_t> read_file(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_CASE("every game of the corpus is played as the model plays it") {
    int played = 0;
    for (const auto& game : std::filesystem::directory_iterator(SCROLL2D_CORPUS)) {
        const std::string name = game.path().filename().string();
        CAPTURE(name);
        tests::note_for_crash(name);
        REQUIRE_NOTHROW(model::play_game(read_file(game.path()), model::module_path(SCROLL2D_MODULE)));
        ++played;
    }
    CHECK(played > 0);
}

}  // namespace
