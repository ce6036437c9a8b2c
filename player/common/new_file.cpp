#include "player/common/new_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "player/common/program.h"
#include "player/common/system_file.h"

namespace player {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, int error) {
    throw std::runtime_error(path + ": " + std::strerror(error));
}

void require_replaceable(const std::string& path) {
    std::error_code error;
    const fs::file_status there = fs::symlink_status(path, error);
    if (!fs::exists(there)) return;
    if (!fs::is_regular_file(there)) {
        const char* const what = fs::is_directory(there) ? "folder"
                                 : fs::is_symlink(there) ? "link"
                                                         : "special file";
        throw std::runtime_error(path + ": this is a " + what + ", and only regular files are replaced");
    }
    if (!is_writable(path)) fail(path, errno);
}

// "out/film.mp4" -> "out/film.part1234_0.mp4", of this process alone.
std::string path_beside(const fs::path& path, int attempt) {
    return (path.parent_path() / path.stem()).string() + ".part" + std::to_string(process_number()) + "_" +
           std::to_string(attempt) + path.extension().string();
}

}  // namespace

NewFile::NewFile(std::string path) : path_(std::move(path)) {
    require_replaceable(path_);
    for (int attempt = 0; stream_ == nullptr; ++attempt) {
        beside_ = path_beside(path_, attempt);
        stream_ = open_new(beside_);
        if (stream_ == nullptr && errno != EEXIST) fail(path_, errno);
    }
}

NewFile::~NewFile() {
    if (stream_ != nullptr) std::fclose(stream_);
    if (!beside_.empty()) std::remove(beside_.c_str());
}

void NewFile::keep() {
    if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail(path_, errno);
    require_replaceable(path_);
    std::error_code error;
    fs::rename(beside_, path_, error);  // replaces on every system
    if (error) throw std::runtime_error(path_ + ": " + error.message());
    beside_.clear();
}

}  // namespace player
