// Where finished frames go: shots on disk, a window, a film.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "player/options.h"
#include "player/picture.h"

namespace player {

class Output {
  public:
    virtual ~Output() = default;
    // Whether this output takes the picture of a frame; frames count from 1, `last` is the final one.
    [[nodiscard]] virtual bool wants(int frame, bool last) const = 0;
    virtual void take(const Picture& screen, int frame) = 0;
    // After the last frame.
    virtual void finish() {}
};

// shots.cpp: PNGs of every so many frames and of the last, and their contact sheet.
std::unique_ptr<Output> make_shots(const Options& options);

// recorder.cpp: a film of every frame, its format by the file's extension. Errors: std::runtime_error for an
// extension that is no film's, and when ffmpeg is needed and not there; both before anything is played.
std::unique_ptr<Output> make_recorder(const std::string& path, int scale);

// outputs.cpp

// All that the options ask for. Errors: std::runtime_error for a place that cannot be written.
std::vector<std::unique_ptr<Output>> make_outputs(const Options& options);
// For a run without a window: names the places below `options.out` for shots and sheet that were not named.
// Shots of an earlier run there are removed. Returns a line about each, for the end of the run.
std::vector<std::string> choose_places(Options& options);

}  // namespace player
