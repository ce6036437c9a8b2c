// Scripts by name, and what the player says to a name that it does not know.
#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "player/common/names.h"
#include "player/common/script_path.h"

using namespace player;
namespace fs = std::filesystem;

TEST_CASE("the closest name") {
    const std::vector<std::string> names{"speed", "ratio", "region1", "region2"};
    CHECK(closest("sped", names) == "speed");
    CHECK(closest("reigon2", names) == "region2");
    CHECK(closest("region", names) == "region1");
    CHECK(closest("raito", {"radio", "ratio"}) == "ratio");
    CHECK_FALSE(closest("colour", names));
    CHECK_FALSE(closest("fps", {"bpp"}));
    CHECK_FALSE(closest("x", {}));
}

TEST_CASE("a demo is found by the end of its path, and a mistyped one named") {
    const fs::path root = fs::temp_directory_path() / ("demos" + std::to_string(std::random_device{}()));
    const fs::path demos = root / "demos";
    for (const char* name : {"main.lua", "fade.lua", "guide/fade.lua", "guide/sky.lua", "lib/hand.lua"}) {
        fs::create_directories((demos / name).parent_path());
        std::ofstream(demos / name) << "quit()";
    }
    std::ofstream(root / "own.lua") << "quit()";
    const fs::path here = fs::current_path();
    fs::create_directory(root / "elsewhere");
    fs::current_path(root / "elsewhere");
    const auto found = [&](const std::string& asked) {
        return fs::path(find_script(asked, demos)).lexically_relative(root);
    };
    for (const char* asked : {"main", "main.lua", "demos/main", "demos/main.lua", "./main"})
        CHECK(found(asked) == "demos/main.lua");
    for (const char* asked : {"sky", "guide/sky", "demos/guide/sky.lua"})
        CHECK(found(asked) == "demos/guide/sky.lua");
    CHECK(found("guide/fade") == "demos/guide/fade.lua");
    CHECK(found((root / "own").string()) == "own.lua");

    const auto message = [&](const std::string& asked) -> std::string {
        try {
            return "found " + find_script(asked, demos);
        } catch (const std::exception& error) {
            return error.what();
        }
    };
    CHECK(message("demos/mian.lua") == "no such script: demos/mian.lua; did you mean demos/main.lua?");
    CHECK(message("mian") == "no such script: mian; did you mean main?");
    CHECK(
        message((root / "onw.lua").string()).ends_with("did you mean " + (root / "own.lua").string() + "?"));
    CHECK(message("demos/guide/cup") == "no such script: demos/guide/cup");
    CHECK(message("nothing_like_it") == "no such script: nothing_like_it");
    CHECK(message("hand") == "no such script: hand");
    std::ofstream(demos / "fade.lua") << "-- Fades\n-- out. And more\nquit()\n-- no";
    CHECK(list_of(demos) == "fade                Fades out.\nmain\n");
    CHECK(message("fade").starts_with("more than one script is called fade: "));
    CHECK(message(root.string()).starts_with("no such script"));
    fs::current_path(here);
    fs::remove_all(root);
}
