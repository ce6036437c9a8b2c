#include "player/options.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "player/names.h"
#include "player/script_path.h"

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

// CLI11's own message, and for each option that there is none of the closest one that there is.
std::string describe(const CLI::App* app, const CLI::Error& error) {
    std::string text = error.what();
    std::vector<std::string> names;
    for (const CLI::Option* option : app->get_options())
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& extra : app->remaining()) {
        const auto name =
            extra.starts_with("-") ? closest(extra.substr(0, extra.find('=')), names) : std::nullopt;
        if (name) text += "; did you mean " + *name + "?";
    }
    return text + "\nRun with --help for the list of options.\n";
}

// The program's own folder is not where the demos are, so they are given by who starts it.
void resolve_script(Options& options, const std::string& asked, const std::string& demos) {
    try {
        options.script = find_script(asked, demos);
    } catch (const std::exception& error) {
        throw CLI::ValidationError(error.what());
    }
}

}  // namespace

std::optional<Options> parse_options(int argc, char** argv, int& exit_status) {
    Options options;
    options.module = module_beside_program();

    CLI::App app{"Plays a game script, in a window or without one. F1 in the window lists its keys.",
                 "scroll2d_player"};
    app.failure_message(describe);
    std::string asked = "main", demos;
    app.add_option("script", asked, "The game: a Lua script, or the name of a demo [main]");
    app.add_flag("--window,!--no-window", options.window,
                 "Play in a window [./play: where there is a display]");
    app.add_option("--frames", options.frames,
                   "Stop after N frames, 60 are a second [300; in a window: go on until it is closed]")
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
    app.add_option("--record", options.film,
                   "Write a film, such as out/film.mp4, or .webm, .gif: these need ffmpeg; .png, animated, "
                   "needs nothing");
    app.add_flag("--inspect", options.inspect,
                 "Show the inspector, in shots and films as well as in the window");
    app.add_option("--scale", options.scale, "Enlarge shots and films N times")
        ->capture_default_str()
        ->check(CLI::Range(1, 16));
    app.add_option("--seed", options.seed, "Seed of math.random")->capture_default_str();
    app.add_option("--module", options.module, "Module to load [RVK_mod_scroll2D.so beside this program]")
        ->check(CLI::ExistingFile);
    app.add_option("--demos", demos, "Folder of the demos that can be played by name");
    app.add_option("--out", options.out,
                   "Without a window: shots into FOLDER/NAME and their sheet into FOLDER/NAME.png, unless "
                   "said otherwise");
    try {
        app.parse(argc, argv);
        resolve_script(options, asked, demos);
    } catch (const CLI::ParseError& error) {
        exit_status = app.exit(error);
        return std::nullopt;
    }
    return options;
}

}  // namespace player
