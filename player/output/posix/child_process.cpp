#include "player/output/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace player {
namespace {

// Returns an error number.
int spawn(pid_t& process, const std::vector<std::string>& command, int input) {
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setpgroup(&attributes, 0);  // of its own, so that a Ctrl+C does not reach it
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    const int error = posix_spawnp(&process, words[0], &files, &attributes, words.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words) {
    // A program that ends early shall be an error of ours, not the end of the player.
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
    pid_t process = 0;
    const int error = spawn(process, words, ends[0]);
    close(ends[0]);
    input_ = ends[1];
    if (error != 0) {
        close_input();
        throw std::runtime_error(words[0] + " cannot be run: " + std::strerror(error));
    }
    process_ = process;
}

ChildProcess::~ChildProcess() {
    [[maybe_unused]] const bool content = finish();
}

void ChildProcess::close_input() {
    if (input_ != none) close(static_cast<int>(std::exchange(input_, none)));
}

bool ChildProcess::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(static_cast<int>(input_), bytes.data(), bytes.size());
        if (count > 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (count < 0 && errno != EINTR)
            return false;
    }
    return true;
}

bool ChildProcess::finish() {
    close_input();
    if (process_ == none) return true;
    int status = 0;
    while (waitpid(static_cast<pid_t>(process_), &status, 0) < 0 && errno == EINTR) {
    }
    process_ = none;
    return status == 0;
}

bool ChildProcess::is_installed(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((std::filesystem::path(folder) / program).c_str(), X_OK) == 0) return true;
    return false;
}

}  // namespace player
