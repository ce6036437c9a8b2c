// What a script writes, as the engine has it, and which files a game is made of.
#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "player/script/session.h"

using namespace player;
namespace fs = std::filesystem;

namespace {

struct Scratch {
    fs::path folder = fs::temp_directory_path() / ("script" + std::to_string(std::random_device{}()));
    Scratch() { fs::create_directory(folder); }
    ~Scratch() { fs::remove_all(folder); }
    [[nodiscard]] Options game(const std::string& text) const {
        std::ofstream(folder / "game.lua") << text;
        Options options;
        options.script = (folder / "game.lua").string();
        options.module = SCROLL2D_MODULE;
        return options;
    }
};

}  // namespace

TEST_CASE("the fields of a process are the words of the engine's record") {
    const Scratch scratch;
    Session session(
        scratch.game(R"(process {x = -1.5, y = 2.9, z = 3, file = 4, graph = 5, region = 6, resolution = 7,
        angle = 8, size = 9, size_x = 10, size_y = 11, flags = 12, status = 3, scroll_mask = 14, scroll_mark = 15,
        visible = 0, silhouette = 17, alpha = 18.5, ctype = c_scroll, graph_table = {19, -20}})"));
    session.script.run_turns();
    const ProcessNode* node = session.game.engine.processes().first(1);
    REQUIRE(node != nullptr);
    const ProcessLocals& p = *node->data;
    CHECK(std::array{p.x, p.y, p.z, p.file, p.graph, p.region, p.resolution, p.angle, p.size} ==
          std::array{-2, 2, 3, 4, 5, 6, 7, 8, 9});
    CHECK(std::array{p.size_x, p.size_y, p.flags, p.status, p.scroll_mask, p.scroll_mark, p.word33, p.word44,
                     p.word43} == std::array{10, 11, 12, 3, 14, 15, 0, 17, 255 - 18});
    CHECK(std::vector(p.graph_table, p.graph_table + 3) == std::vector{2, 19, -20});
}

TEST_CASE("every file that a script reads is watched") {
    const Scratch scratch;
    const Options options =
        scratch.game(R"(require "part" load_map(1, 10, "map.png") background "sky.png" quit())");
    for (const char* name : {"map.png", "sky.png"})
        write_png((scratch.folder / name).string(), Picture(2, 2));
    std::ofstream(scratch.folder / "part.lua") << "return 1";
    for (const char* name : {"game.lua", "part.lua", "map.png", "sky.png"}) {
        Session session(options);
        session.play_frame();
        CHECK_FALSE(session.game.files_read.changed());
        std::ofstream(scratch.folder / name, std::ios::app) << ' ';
        CHECK(session.game.files_read.changed() == scratch.folder / name);
    }
}
