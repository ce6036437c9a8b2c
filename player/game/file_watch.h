// Notices that a file which a game was made from is not what it was.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace player {

class FileWatch {
  public:
    // To be called before the file is read, so that no change falls between. A file that is not there is
    // watched for its coming. The first call for a file counts.
    void note(const std::string& path);
    // A file that has changed since it was noted; nothing when all are as they were.
    [[nodiscard]] std::optional<std::string> changed() const;

  private:
    struct Stamp {
        std::filesystem::file_time_type time{};
        std::uintmax_t size = 0;
        bool there = false;
        bool operator==(const Stamp&) const = default;
    };
    static Stamp stamp(const std::string& path);

    std::map<std::string, Stamp> files_;
};

}  // namespace player
