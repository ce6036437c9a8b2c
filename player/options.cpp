#include "player/options.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

namespace player {
namespace {

constexpr int largest_side = 16384;  // pixels; keeps every screen below 2^31 bytes

std::string module_beside_program() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path() / "RVK_mod_scroll2D.so").string();
}

void read_size(const std::string& text, Options& options) {
    int used = 0;
    if (std::sscanf(text.c_str(), "%dx%d%n", &options.width, &options.height, &used) != 2 ||
        text.size() != static_cast<std::size_t>(used) || options.width < 1 || options.height < 1 ||
        options.width > largest_side || options.height > largest_side)
        throw CLI::ValidationError("--size", "\"" + text + "\" is not of the form 640x480");
}

}  // namespace

std::optional<Options> parse_options(int argc, char** argv, int& exit_status) {
    Options options;
    options.module = module_beside_program();

    CLI::App app{"Plays a game script without a window and leaves pictures.", "scroll2d_player"};
    app.add_option("script", options.script, "The game: a Lua script")->required()->check(CLI::ExistingFile);
    app.add_option("--frames", options.frames, "Stop after N frames (60 are a second)")
        ->capture_default_str()
        ->check(CLI::Range(1, 100'000'000));
    app.add_option_function<std::string>(
        "--size", [&options](const std::string& text) { read_size(text, options); },
        "First video mode, WxH [640x480]");
    app.add_option("--bpp", options.bits_per_pixel, "Bits per pixel")
        ->capture_default_str()
        ->check(CLI::IsMember({8, 16, 32}));
    app.add_option("--shots", options.shots_folder, "Write frame_00060.png and so on into this folder");
    app.add_option("--every", options.every, "Frames between shots")
        ->capture_default_str()
        ->check(CLI::Range(1, 100'000'000));
    app.add_option("--sheet", options.sheet, "Write one PNG with all shots");
    app.add_option("--scale", options.scale, "Enlarge shots N times")
        ->capture_default_str()
        ->check(CLI::Range(1, 16));
    app.add_option("--seed", options.seed, "Seed of math.random")->capture_default_str();
    app.add_option("--module", options.module, "Module to load [RVK_mod_scroll2D.so beside this program]")
        ->check(CLI::ExistingFile);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        exit_status = app.exit(error);
        return std::nullopt;
    }
    return options;
}

}  // namespace player
