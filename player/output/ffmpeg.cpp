#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "player/common/pacer.h"
#include "player/output/film.h"

namespace player {
namespace {

constexpr const char* program = "ffmpeg";

// What makes a format of the raw pictures.
std::string encoding(FilmFormat format) {
    // Video of these kinds halves the colours' resolution, so its sides must be even. How a film is shown
    // that does not name its colours differs from player to player, so these do.
    const std::string video =
        "-vf pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=bt709:out_range=tv -pix_fmt yuv420p "
        "-color_range tv -colorspace bt709 -color_primaries bt709 -color_trc bt709 ";
    if (format == FilmFormat::mp4) return video + "-c:v libx264 -preset medium -crf 15 -movflags +faststart";
    if (format == FilmFormat::webm)
        return video + "-c:v libvpx-vp9 -crf 18 -b:v 0 -deadline good -cpu-used 4 -row-mt 0";
    // GIF. A palette for each picture: one for all could be made only after the last.
    return "-filter_complex fps=30,split[a][b];[a]palettegen=stats_mode=single:reserve_transparent=0[p];"
           "[b][p]paletteuse=new=1:dither=bayer:bayer_scale=4";
}

// The command, word by word. Without -xerror a full disk would not show in its exit status. One thread, since
// the work is divided differently from run to run.
std::vector<std::string> command(const std::string& path, FilmFormat format, int width, int height) {
    std::stringstream text;
    text << program << " -hide_banner -loglevel error -xerror -y -f rawvideo -pix_fmt rgb24 -video_size "
         << width << 'x' << height << " -framerate " << frames_per_second << " -i - " << encoding(format)
         << " -threads 1 -filter_threads 1 -filter_complex_threads 1"
            " -fflags +bitexact -flags:v +bitexact -map_metadata -1";
    std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
    words.push_back("file:" + path);
    return words;
}

class FfmpegFilm final : public Film {
  public:
    explicit FfmpegFilm(const std::vector<std::string>& command) {
        // A program that ends early shall be an error of ours, not the end of the player.
        std::signal(SIGPIPE, SIG_IGN);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
        pipe_ = ends[1];
        start(command, ends[0]);
    }

    ~FfmpegFilm() override {
        if (pipe_ >= 0) close(pipe_);
        if (process_ > 0) waitpid(process_, nullptr, 0);
    }

    void add(const Picture& picture) override {
        const std::vector<std::uint8_t> rgb = rgb_bytes(picture);
        for (std::size_t done = 0; done < rgb.size();) {
            const ssize_t count = write(pipe_, rgb.data() + done, rgb.size() - done);
            if (count > 0) {
                done += static_cast<std::size_t>(count);
            } else if (count < 0 && errno != EINTR) {
                end();
                throw std::runtime_error(std::string(program) + " ended before the film did");
            }
        }
    }

    void finish() override { end(); }

  private:
    void start(const std::vector<std::string>& command, int input) {
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
        // In a process group of its own: a Ctrl+C that ends the game must not end the film as well.
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
        const int error = posix_spawnp(&process_, program, &files, &attributes, words.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        close(input);
        if (error != 0) {
            process_ = 0;
            throw std::runtime_error(std::string(program) + " cannot be run: " + std::strerror(error));
        }
    }

    // Closes the film. What ffmpeg objects to it has printed itself.
    void end() {
        close(pipe_);
        pipe_ = -1;
        int status = 0;
        while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        process_ = 0;
        if (status != 0) throw std::runtime_error(std::string(program) + " could not make the film");
    }

    int pipe_ = -1;
    pid_t process_ = 0;
};

bool is_installed() {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((std::filesystem::path(folder) / program).c_str(), X_OK) == 0) return true;
    return false;
}

}  // namespace

void require_ffmpeg() {
    if (is_installed()) return;
    throw std::runtime_error(
        std::string("films of this format are made by ffmpeg, which is not installed: apt-get install ") +
        program + ", or record to a .png, which needs nothing and is animated, too");
}

std::unique_ptr<Film> make_ffmpeg_film(const std::string& path, FilmFormat format, int width, int height) {
    return std::make_unique<FfmpegFilm>(command(path, format, width, height));
}

}  // namespace player
