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

#include "player/common/pacer.h"
#include "player/output/film.h"

namespace player {
namespace {

constexpr const char* program = "ffmpeg";

// What makes a format of the raw pictures. One thread, since the work is divided differently from run to run.
struct Format {
    const char* extension;
    std::vector<const char*> arguments;
};
const std::vector<Format>& formats() {
    // Video of this kind halves the colours' resolution, so its sides must be even.
    constexpr const char* even = "pad=ceil(iw/2)*2:ceil(ih/2)*2";
    static const std::vector<Format> all{
        // A palette for each picture: one for all could be made only after the last.
        {".gif",
         {"-filter_complex",
          "fps=30,split[a][b];[a]palettegen=stats_mode=single:reserve_transparent=0[p];"
          "[b][p]paletteuse=new=1:dither=bayer:bayer_scale=4"}},
        {".mp4",
         {"-vf", even, "-c:v", "libx264", "-preset", "medium", "-crf", "15", "-pix_fmt", "yuv420p",
          "-movflags", "+faststart"}},
        {".webm",
         {"-vf", even, "-c:v", "libvpx-vp9", "-crf", "18", "-b:v", "0", "-deadline", "good", "-cpu-used", "4",
          "-row-mt", "0", "-pix_fmt", "yuv420p"}},
    };
    return all;
}

const Format& format_of(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (const Format& format : formats())
        if (extension == format.extension) return format;
    throw std::runtime_error(path + ": there is no such format");
}

class FfmpegFilm final : public Film {
  public:
    FfmpegFilm(const std::string& path, int width, int height) : path_(path) {
        // A program that ends early shall be an error of ours, not the end of the player.
        std::signal(SIGPIPE, SIG_IGN);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(path + ": " + std::strerror(errno));
        pipe_ = ends[1];
        start(ends[0], width, height);
    }

    ~FfmpegFilm() override {
        if (pipe_ >= 0) close(pipe_);
        if (process_ > 0) waitpid(process_, nullptr, 0);
    }

    void add(const Picture& picture) override {
        rgb_.clear();
        for (const Rgba& p : picture.pixels) rgb_.insert(rgb_.end(), {p.r, p.g, p.b});
        for (std::size_t done = 0; done < rgb_.size();) {
            const ssize_t count = write(pipe_, rgb_.data() + done, rgb_.size() - done);
            if (count > 0)
                done += static_cast<std::size_t>(count);
            else if (count < 0 && errno != EINTR)
                end();
        }
    }

    void finish() override { end(); }

  private:
    void start(int input, int width, int height) {
        const Format& format = format_of(path_);
        std::ostringstream size, rate;
        size << width << 'x' << height;
        rate << frames_per_second;
        const std::string size_text = size.str(), rate_text = rate.str(), target = "file:" + path_;
        std::vector<const char*> words{program,
                                       "-hide_banner",
                                       "-loglevel",
                                       "error",
                                       "-y",
                                       "-f",
                                       "rawvideo",
                                       "-pix_fmt",
                                       "rgb24",
                                       "-video_size",
                                       size_text.c_str(),
                                       "-framerate",
                                       rate_text.c_str(),
                                       "-i",
                                       "-"};
        words.insert(words.end(), format.arguments.begin(), format.arguments.end());
        for (const char* word : {"-threads", "1", "-filter_threads", "1", "-filter_complex_threads", "1",
                                 "-fflags", "+bitexact", "-flags:v", "+bitexact", "-map_metadata", "-1"})
            words.push_back(word);
        words.push_back(target.c_str());
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
        const int error = posix_spawnp(&process_, program, &files, &attributes,
                                       const_cast<char* const*>(words.data()), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        close(input);
        if (error != 0) {
            process_ = 0;
            throw std::runtime_error(path_ + ": " + program + " cannot be run: " + std::strerror(error));
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
        if (status != 0) throw std::runtime_error(path_ + ": " + program + " could not make the film");
    }

    std::string path_;
    int pipe_ = -1;
    pid_t process_ = 0;
    std::vector<std::uint8_t> rgb_;
};

bool is_installed() {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((std::filesystem::path(folder) / program).c_str(), X_OK) == 0) return true;
    return false;
}

}  // namespace

void require_ffmpeg(const std::string& path) {
    if (is_installed()) return;
    throw std::runtime_error(
        path + ": films of this format are made by ffmpeg, which is not installed: apt-get install " +
        program + ", or record to a .png, which needs nothing and is animated, too");
}

std::unique_ptr<Film> make_ffmpeg_film(const std::string& path, int width, int height) {
    return std::make_unique<FfmpegFilm>(path, width, height);
}

}  // namespace player
