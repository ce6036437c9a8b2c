// Where finished frames go: shots on disk, a window, a film.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "player/common/options.h"
#include "player/common/picture.h"

namespace player {

class Output {
  public:
    virtual ~Output() = default;
    // Whether this output takes the picture of a frame; frames count from 1, `last` is the final one.
    [[nodiscard]] virtual bool wants(int frame, bool last) const = 0;
    virtual void take(const Picture& screen, int frame) = 0;
    // After the last frame. Returns a line about each thing that is now written. Errors: std::runtime_error.
    virtual std::vector<std::string> finish() = 0;
};
using Outputs = std::vector<std::unique_ptr<Output>>;

// shots.cpp: PNGs of every so many frames and of the last, and their contact sheet.
std::unique_ptr<Output> make_shots(const Options& options);
// Those that an earlier run left in a folder; whatever else there is stays.
void remove_shots(const std::string& folder);

// recorder.cpp: a film of every frame, its format by the file's ending, which must be one's that there is.
// Errors: std::runtime_error when ffmpeg is needed and not there, before anything is played.
std::unique_ptr<Output> make_recorder(const std::string& path, int scale);

// outputs.cpp

// All that the options ask for. Folders that are missing are made. Errors: std::runtime_error for a place
// that cannot be written, so that nobody plays for nothing.
Outputs make_outputs(const Options& options);
// For a run without a window: names the places below `options.out` for shots and sheet that were not named,
// after the script, and removes the shots of an earlier run there. Errors: std::runtime_error when something
// else has such a place, a link included.
void choose_places(Options& options);
// Plays, then ends the outputs, and prints a line about each thing that they have written: after an error in
// `play`, too, since the pictures up to it are what one wants to look at. Returns what `play` returned.
int deliver(const Outputs& outputs, const std::function<int()>& play);

}  // namespace player
