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

}  // namespace player
