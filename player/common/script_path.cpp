#include "player/common/script_path.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "player/common/names.h"

namespace player {
namespace {

namespace fs = std::filesystem;

constexpr const char* extension = ".lua";

void add_scripts(const fs::path& folder, std::vector<fs::path>& scripts) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == extension && entry.is_regular_file()) scripts.push_back(entry.path());
}

// The scripts of a folder and of the folders right in it, sorted.
std::vector<fs::path> scripts_in(const fs::path& folder) {
    std::vector<fs::path> scripts;
    add_scripts(folder, scripts);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        // Libraries are for scripts to load, nothing to play.
        if (entry.is_directory() && entry.path().filename() != "lib") add_scripts(entry.path(), scripts);
    std::sort(scripts.begin(), scripts.end());
    return scripts;
}

fs::path with_extension(const fs::path& path) {
    return path.extension() == extension ? path : fs::path(path.string() + extension);
}

// "sky.lua", "guide/sky.lua", "demos/guide/sky.lua": the ways to name a demo.
std::vector<fs::path> ends_of(const fs::path& script, const fs::path& demos) {
    fs::path end = script.filename();
    std::vector<fs::path> ends{end};
    for (fs::path folder = script.parent_path(); folder != demos.parent_path();
         folder = folder.parent_path()) {
        end = folder.filename() / end;
        ends.push_back(end);
    }
    return ends;
}

bool is_named(const fs::path& script, const fs::path& demos, const fs::path& asked) {
    const auto ends = ends_of(script, demos);
    return std::find(ends.begin(), ends.end(), asked) != ends.end();
}

fs::path without_extension(const fs::path& path) {
    return path.extension() == extension ? fs::path(path).replace_extension() : path;
}

// "; did you mean ..." over everything that could have been written, or nothing. Endings are left out of the
// comparison: they would make all names alike.
std::string hint(const std::string& asked, const fs::path& demos, const std::vector<fs::path>& scripts) {
    const fs::path folder = fs::path(asked).parent_path();
    std::vector<fs::path> neighbours;
    add_scripts(folder.empty() ? "." : folder, neighbours);
    std::sort(neighbours.begin(), neighbours.end());
    std::vector<std::string> names;
    for (const fs::path& script : neighbours)
        names.push_back(without_extension(folder / script.filename()).string());
    for (const fs::path& script : scripts)
        for (const fs::path& end : ends_of(script, demos))
            names.push_back(without_extension(end).generic_string());
    const fs::path wanted = without_extension(asked);
    // A long path is no licence to misread a short name.
    const auto name = closest(wanted.string(), names, wanted.filename().string().size());
    const char* const ending = wanted == asked ? "" : extension;
    return name ? "; did you mean " + *name + ending + "?" : "";
}

// The first sentence of the comment that a script opens with.
std::string summary_of(const fs::path& script) {
    std::ifstream file(script);
    std::string text;
    constexpr std::string_view comment = "-- ";
    for (std::string line; std::getline(file, line) && line.starts_with(comment);) {
        if (line.starts_with("-- picture")) break;
        if (!text.empty()) text += ' ';
        text += line.substr(comment.size());
        const auto end = text.find(". ");
        if (end != std::string::npos) return text.substr(0, end + 1);
    }
    return text;
}

}  // namespace

std::string list_of(const fs::path& demos) {
    constexpr std::size_t width = 100, indent = 20;
    std::string list;
    const auto end_line = [&list](const std::string& line) {
        list += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    };
    for (const fs::path& script : scripts_in(demos)) {
        if (script.parent_path() != demos) continue;
        std::string line = script.stem().string();
        line.resize(std::max(indent, line.size() + 1), ' ');
        std::istringstream words(summary_of(script));
        for (std::string word; words >> word;) {
            if (line.size() + word.size() > width) {
                end_line(line);
                line = std::string(indent, ' ');
            }
            line += word + " ";
        }
        end_line(line);
    }
    return list;
}

std::string find_script(const std::string& asked, const fs::path& demos) {
    for (const fs::path& path : {fs::path(asked), with_extension(asked)})
        if (fs::is_regular_file(path)) return path.string();

    const std::vector<fs::path> scripts = demos.empty() ? std::vector<fs::path>{} : scripts_in(demos);
    std::vector<fs::path> meant;
    std::copy_if(scripts.begin(), scripts.end(), std::back_inserter(meant), [&](const fs::path& script) {
        return is_named(script, demos, with_extension(asked).lexically_normal());
    });
    if (meant.size() == 1) return meant.front().string();
    if (meant.empty()) throw std::runtime_error("no such script: " + asked + hint(asked, demos, scripts));
    std::string list;
    for (const fs::path& script : meant) list += (list.empty() ? "" : " or ") + script.string();
    throw std::runtime_error("more than one script is called " + asked + ": " + list);
}

}  // namespace player
