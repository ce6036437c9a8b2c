// At 8 bits, maps whose colours were matched to the palette: when it changes, they are matched anew.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "host/files.h"
#include "player/common/picture.h"

namespace player {

// The indices of a picture's colours: its own where its palette has the same colour at that place, else those
// of the nearest. Transparent pixels, and index 0 of an indexed picture, become 0.
std::vector<std::uint8_t> match(const Picture& picture, const host::Palette& palette);

class MatchedMaps {
  public:
    // What a map was made of.
    void keep(int file, int graph, Picture picture, const host::Palette& palette);
    // Of a map that is made anew, of nothing that can be matched, or unloaded.
    void forget(int file, int graph) { maps_.erase({file, graph}); }
    void forget_all() { maps_.clear(); }
    // Pixels that a script has drawn since keep the index it gave them. Returns whether any map was matched.
    bool match_anew(host::Files& files, const host::Palette& palette);

  private:
    struct Source {
        Picture picture;
        std::vector<std::uint8_t> indices;  // as they were matched last
    };
    std::map<std::pair<int, int>, Source> maps_;  // by file and graph
};

}  // namespace player
