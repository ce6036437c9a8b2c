#include "player/game/file_watch.h"

namespace player {

void FileWatch::note(const std::string& path) {
    files_.try_emplace(path, stamp(path));
}

std::optional<std::string> FileWatch::changed() const {
    for (const auto& [path, known] : files_)
        if (stamp(path) != known) return path;
    return std::nullopt;
}

// A file that cannot be read counts as one that is not there.
FileWatch::Stamp FileWatch::stamp(const std::string& path) {
    std::error_code error;
    Stamp result;
    result.time = std::filesystem::last_write_time(path, error);
    if (error) return {};
    result.size = std::filesystem::file_size(path, error);
    if (error) return {};
    result.there = true;
    return result;
}

}  // namespace player
