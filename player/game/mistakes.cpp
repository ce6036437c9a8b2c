#include "player/game/mistakes.h"

#include <cstdio>

#include "host/engine.h"
#include "player/game/missing_maps.h"
#include "player/game/scrolls.h"

namespace player {
namespace {

// "10 to 12, 20", of numbers in ascending order.
std::string runs_of(const std::vector<std::int32_t>& numbers) {
    std::string text;
    for (auto run = numbers.begin(); run != numbers.end();) {
        auto last = run;
        while (last + 1 != numbers.end() && *(last + 1) == *last + 1) ++last;
        text += (text.empty() ? "" : ", ") + std::to_string(*run);
        if (last != run) text += " to " + std::to_string(*last);
        run = last + 1;
    }
    return text;
}

std::string without_region(host::Regions& regions, int region) {
    if (region < 0 || region >= regions.count())
        return "there is no region " + std::to_string(region) + ": regions are numbered 0 to " +
               std::to_string(regions.count() - 1);
    std::vector<std::int32_t> defined;
    for (int i = 0; i < regions.count(); ++i)
        if (regions.defined(i)) defined.push_back(i);
    return "region " + std::to_string(region) + " is not defined (there are: " + runs_of(defined) + ")";
}

}  // namespace

std::string without_map(host::Engine& engine, int file, int graph) {
    const auto text = [](int number) { return std::to_string(number); };
    const int files = engine.files().file_count();
    if (file < 0 || file >= files)
        return "there is no file " + text(file) + ": files are numbered 0 to " + text(files - 1);
    const std::string what = "file " + text(file) + " has no graph " + text(graph);
    if (graph < 1 || graph >= host::graph_limit)
        return what + ": graphs are numbered 1 to " + text(host::graph_limit - 1);
    const std::string there = runs_of(engine.files().graphs(file));
    return what + (there.empty() ? " (the file is empty)" : " (there are: " + there + ")");
}

void Mistakes::warn(const std::string& text, const std::string& mistake) {
    if (told_.insert(mistake).second) std::fprintf(stderr, "warning: %s\n", text.c_str());
}

void Mistakes::note_unloading(int file, int graph, const std::string& place) {
    for (const int scroll : running_scrolls(engine_)) {
        const auto shows = [&](const char* plane) {
            return engine_.global("scroll", scroll, plane) == graph;
        };
        if (engine_.global("scroll", scroll, "file") == file && (shows("graph1") || shows("graph2")))
            unloaded_.push_back({scroll, file, graph, place});
    }
}

void Mistakes::look() {
    look_for_pictures();
    look_for_regions();
    look_for_unloaded();
}

void Mistakes::look_for_pictures() {
    for (const std::int32_t type : {host::screen_coordinates, host::scroll_coordinates})
        for (const auto& [picture, count] : missing_maps(engine_, type))
            warn(pictures_[picture] + without_map(engine_, picture.first, picture.second) +
                     "; a process that shows it is not drawn",
                 "picture " + std::to_string(picture.first) + " " + std::to_string(picture.second));
}

void Mistakes::look_for_regions() {
    for (const int scroll : running_scrolls(engine_))
        for (const char* field : {"region1", "region2"})
            look_at_region("scroll[" + std::to_string(scroll) + "]." + field,
                           engine_.global("scroll", scroll, field), -1);
    for (const std::int32_t type : {host::screen_coordinates, host::scroll_coordinates})
        for (const ProcessNode* node = engine_.processes().first(type); node != nullptr; node = node->next)
            if (host::is_shown(*node->data)) look_at_region("the region of a process", node->data->region, 0);
}

void Mistakes::look_at_region(const std::string& field, int region, int none) {
    if (region == none || engine_.regions().defined(region)) return;
    warn(regions_[region] + without_region(engine_.regions(), region) + "; it is " + field,
         "region " + std::to_string(region));
}

void Mistakes::look_for_unloaded() {
    const auto running = running_scrolls(engine_);
    for (const Unloaded& gone : unloaded_)
        if (running.contains(gone.scroll) && engine_.files().find_map(gone.file, gone.graph) == nullptr)
            warn(gone.place + "scroll " + std::to_string(gone.scroll) + " shows graph " +
                 std::to_string(gone.graph) + " of file " + std::to_string(gone.file) +
                 ", which was unloaded: the scroll is not drawn");
    unloaded_.clear();
}

}  // namespace player
