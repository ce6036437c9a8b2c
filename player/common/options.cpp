#include "player/common/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "player/common/film_format.h"
#include "player/common/names.h"
#include "player/common/program.h"
#include "player/common/script_path.h"

namespace player {
namespace {

constexpr int largest_side = 16384;  // pixels; keeps every screen below 2^31 bytes

void read_size(const std::string& text, Options& options) {
    long long width = 0, height = 0;
    int used = 0;
    if (std::sscanf(text.c_str(), "%lldx%lld%n", &width, &height, &used) != 2 ||
        text.size() != static_cast<std::size_t>(used) || width < 1 || height < 1)
        throw CLI::ValidationError("--size", "\"" + text + "\" is not of the form 640x480");
    if (std::max(width, height) > largest_side)
        throw CLI::ValidationError("--size", "\"" + text + "\" is too large: no side has more than " +
                                                 std::to_string(largest_side) + " pixels");
    options.width = static_cast<int>(width);
    options.height = static_cast<int>(height);
}

// What is wrong in the words of CLI11, or of an option that there is none, with the closest one that there
// is. What CLI11 lists besides the unknown options may well be their values.
std::string describe(const CLI::App* app, const CLI::Error& error) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app->get_options())
        for (const std::string& name : option->get_lnames()) names.push_back(name);
    std::string text;
    for (const std::string& extra : app->remaining()) {
        if (!extra.starts_with("-")) continue;
        const std::string option = extra.substr(0, extra.find('='));
        const auto name =
            closest(option.substr(std::min(option.find_first_not_of('-'), option.size())), names);
        text += "there is no option " + option + (name ? "; did you mean --" + *name + "?" : "") + "\n";
    }
    if (text.empty()) text = std::string(error.what()) + "\n";
    return text + "--help lists the options, --list the demos.\n";
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

    CLI::App app{"Plays a game script, in a window or without one. F1 in the window lists its keys."};
    app.failure_message(describe);
    app.allow_windows_style_options(false);  // a path may begin with a slash anywhere
    app.option_defaults()->take_last();      // whoever starts the player for others gives options first
    std::string asked = "main", demos;
    bool list = false;
    app.add_option("script", asked, "The game: a Lua script, or the name of a demo [main]");
    app.set_version_flag("--version", "RVK_mod_scroll2D " SCROLL2D_VERSION);
    app.add_flag("--list", list, "List the demos, and play nothing");
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
    app.add_option("--sheet", options.sheet, "Write one PNG with all shots")
        ->check([](const std::string& path) {
            return path.ends_with(".png") ? "" : path + ": the name of a sheet ends with .png";
        });
    app.add_option("--record", options.film,
                   "Write a film, such as out/film.mp4; it ends with " + film_endings() +
                       ", which is animated and the one that needs no ffmpeg")
        ->check([](const std::string& path) {
            return film_format(path) ? "" : path + ": films end with " + film_endings() + " (animated)";
        });
    app.add_flag("--inspect", options.inspect,
                 "Show the inspector, in shots and films as well as in the window");
    app.add_option("--scale", options.scale, "Enlarge shots and films N times")
        ->capture_default_str()
        ->check(CLI::Range(1, 16));
    app.add_option("--seed", options.seed, "Seed of math.random")->capture_default_str();
    app.add_option("--turn-limit", options.turn_limit,
                   "Seconds of the processor that the script may take without frame()")
        ->capture_default_str()
        ->check(CLI::Range(0.1, 1e6));
    app.add_option("--module", options.module, "Module to load [RVK_mod_scroll2D.so beside this program]")
        ->check(CLI::ExistingFile);
    // For the script that starts the player; its user has nothing to choose here.
    app.add_option("--demos", demos, "Folder of the demos that can be played by name")->group("");
    app.add_option("--out", options.out,
                   "Without a window: shots into FOLDER/NAME and their sheet into FOLDER/NAME.png, unless "
                   "said otherwise");
    try {
        app.parse(argc, argv);
        if (list) {
            std::fputs(list_of(demos).c_str(), stdout);
            return std::nullopt;
        }
        resolve_script(options, asked, demos);
    } catch (const CLI::ParseError& error) {
        constexpr int wrong_usage = 2;
        exit_status = app.exit(error) == 0 ? 0 : wrong_usage;
        return std::nullopt;
    }
    return options;
}

}  // namespace player
