// What the command line asks for.
#pragma once

#include <optional>
#include <string>

namespace player {

inline constexpr int frames_without_window = 300;

struct Options {
    std::string script;         // path of the game script
    std::string module;         // path of the module to load
    std::string shots_folder;   // where shots go; empty: nowhere
    std::string sheet;          // contact sheet; empty: none
    std::string film;           // recording of every frame; empty: none
    std::optional<int> frames;  // stop after so many
    int every = 60;             // frames between shots
    int width = 640;            // first video mode, pixels
    int height = 480;
    int bits_per_pixel = 32;
    int scale = 1;          // shots and films are enlarged so many times
    unsigned seed = 1;      // of math.random
    double turn_limit = 3;  // seconds of the processor that a turn of the script may take
    bool window = false;    // play in a window
    bool inspect = false;   // with the inspector
    std::string out;  // folder for shots and sheet that no place was named for, without a window; empty: none
};

// Reads the command line. When there is nothing to play (help was asked for, or something is wrong) it has
// printed why, and `exit_status` says how to end.
std::optional<Options> parse_options(int argc, char** argv, int& exit_status);

}  // namespace player
