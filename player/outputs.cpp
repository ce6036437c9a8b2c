#include <filesystem>

#include "player/output.h"

namespace player {
namespace {

namespace fs = std::filesystem;

void remove_shots(const fs::path& folder) {
    if (!fs::is_directory(folder)) return;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("frame_") && entry.path().extension() == ".png")
            fs::remove(entry.path());
}

}  // namespace

std::vector<std::unique_ptr<Output>> make_outputs(const Options& asked) {
    Options options = asked;
    // The inspector enlarges the game itself, and its own text not at all.
    if (options.inspect && !options.window) options.scale = 1;
    std::vector<std::unique_ptr<Output>> outputs;
    if (!options.shots_folder.empty() || !options.sheet.empty()) outputs.push_back(make_shots(options));
    if (!options.film.empty()) outputs.push_back(make_recorder(options.film, options.scale));
    return outputs;
}

std::vector<std::string> choose_places(Options& options) {
    std::vector<std::string> lines;
    if (options.out.empty()) return lines;
    const fs::path place = fs::path(options.out) / fs::path(options.script).stem();
    if (options.shots_folder.empty()) {
        options.shots_folder = place.string();
        remove_shots(place);
        lines.push_back("pictures: " + options.shots_folder + "/");
    }
    if (options.sheet.empty()) {
        options.sheet = place.string() + ".png";
        fs::create_directories(options.out);
        lines.push_back("contact sheet: " + options.sheet);
    }
    return lines;
}

}  // namespace player
