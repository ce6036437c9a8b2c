// Files that are written whole or not at all.
#pragma once

#include <cstdio>
#include <string>

namespace player {

// A file that takes its name only once it is complete: until then it is written beside it, and what had the
// name before stays as it was. Nothing but a regular file is ever replaced: links are not followed; they,
// folders, devices and files that are protected against writing are left alone.
//
// Errors: std::runtime_error that names the file.
class NewFile {
  public:
    // Also tells whether the folder takes a file at all.
    explicit NewFile(std::string path);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();  // what was not kept is removed

    // What has to be written: as a stream, or under its own path, whose ending is that of the name.
    [[nodiscard]] std::FILE* stream() const { return stream_; }
    [[nodiscard]] const std::string& beside() const { return beside_; }
    // Once everything is written; the stream is then closed.
    void keep();

  private:
    std::string path_;
    std::string beside_;
    std::FILE* stream_ = nullptr;
};

}  // namespace player
