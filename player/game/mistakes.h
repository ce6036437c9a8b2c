// What the author of a script has most likely not meant, and the engine takes without a word.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace host {
class Engine;
}

namespace player {

// "file 1 has no graph 13 (there are: 10 to 12, 20)"
std::string without_map(host::Engine& engine, int file, int graph);

// Warns on standard error, once of each mistake. A place is a line of the script, as "game.lua:12: ".
class Mistakes {
  public:
    explicit Mistakes(host::Engine& engine) : engine_(engine) {}

    void warn(const std::string& text) { warn(text, text); }
    // `mistake` is what tells mistakes apart.
    void warn(const std::string& text, const std::string& mistake);

    // What may still be put right before the frame is drawn. The first place counts, where a process is given
    // a picture, and where a process or a scroll is given a region.
    void note_picture(int file, int graph, const std::string& place) {
        pictures_.try_emplace({file, graph}, place);
    }
    void note_region(int region, const std::string& place) { regions_.try_emplace(region, place); }
    // Right before a map is unloaded.
    void note_unloading(int file, int graph, const std::string& place);

    // Right after a frame was drawn: pictures that processes show and that are not loaded, regions that are
    // not defined, maps that have gone and scrolls show.
    void look();

  private:
    struct Unloaded {
        int scroll, file, graph;
        std::string place;
    };
    void look_for_pictures();
    void look_for_regions();
    void look_for_unloaded();
    void look_at_region(const std::string& field, int region, int none);

    host::Engine& engine_;
    std::map<std::pair<int, int>, std::string> pictures_;  // places by file and graph
    std::map<int, std::string> regions_;
    std::vector<Unloaded> unloaded_;
    std::set<std::string> told_;
};

}  // namespace player
