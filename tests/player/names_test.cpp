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
    const fs::path demos = root / "demos", here = fs::current_path(), elsewhere = root / "elsewhere";
    for (const auto& folder : {demos / "guide", demos / "lib", elsewhere}) fs::create_directories(folder);
    for (const char* name : {"main.lua", "guide/fade.lua", "guide/sky.lua", "lib/hand.lua", "../own.lua"})
        std::ofstream(demos / name) << "quit()";
    std::ofstream(demos / "fade.lua") << "-- Fades\n-- out. And more\nquit()\n-- no";
    fs::current_path(elsewhere);
    // The path that is found below the root, or what is said.
    const auto found = [&](const std::string& asked) -> std::string {
        try {
            return fs::path(find_script(asked, demos)).lexically_relative(root).generic_string();
        } catch (const std::exception& error) {
            return error.what();
        }
    };
    for (const char* asked : {"main", "main.lua", "demos/main", "demos/main.lua", "./main"})
        CHECK(found(asked) == "demos/main.lua");
    for (const char* asked : {"sky", "guide/sky", "demos/guide/sky.lua"})
        CHECK(found(asked) == "demos/guide/sky.lua");
    CHECK(found("guide/fade") == "demos/guide/fade.lua");
    CHECK(found((root / "own").string()) == "own.lua");
    CHECK(found("demos/mian.lua") == "no such script: demos/mian.lua; did you mean demos/main.lua?");
    CHECK(found("mian") == "no such script: mian; did you mean main?");
    CHECK(found((root / "onw.lua").string()).ends_with("did you mean " + (root / "own.lua").string() + "?"));
    for (const char* unknown : {"demos/guide/cup", "nothing_like_it", "hand"})
        CHECK(found(unknown) == std::string("no such script: ") + unknown);
    CHECK(found("fade").starts_with("more than one script is called fade: "));
    CHECK(found(root.string()).starts_with("no such script"));
    CHECK(list_of(demos) == "fade                Fades out.\nmain\n");
    fs::current_path(here);
    fs::remove_all(root);
}
