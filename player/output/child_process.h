// A program of the system's that reads what we write. Each platform has its own: posix/child_process.cpp,
// windows/child_process.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace player {

// Runs from its making to its end. A Ctrl+C that ends the player does not end it.
class ChildProcess {
  public:
    // The first word names the program, which is found as a shell would. Errors: std::runtime_error.
    explicit ChildProcess(const std::vector<std::string>& words);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    // To its standard input, all of it. False: it does not read any more.
    [[nodiscard]] bool write(std::span<const std::uint8_t> bytes);
    // Ends its input and waits for its end. Whether it was content.
    [[nodiscard]] bool finish();

    // Whether a program of that name can be run.
    [[nodiscard]] static bool is_installed(const std::string& program);

  private:
    static constexpr std::intptr_t none = -1;
    void close_input();

    std::intptr_t input_ = none;    // to the system: a descriptor or a handle
    std::intptr_t process_ = none;  // the same
};

}  // namespace player
