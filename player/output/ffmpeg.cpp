#include <iterator>
#include <sstream>
#include <stdexcept>

#include "player/common/pacer.h"
#include "player/output/child_process.h"
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
    explicit FfmpegFilm(const std::vector<std::string>& command) : ffmpeg_(command) {}

    void add(const Picture& picture) override {
        if (ffmpeg_.write(rgb_bytes(picture))) return;
        finish();
        throw std::runtime_error(std::string(program) + " ended before the film did");
    }

    // What ffmpeg objects to the film it has printed itself.
    void finish() override {
        if (!ffmpeg_.finish()) throw std::runtime_error(std::string(program) + " could not make the film");
    }

  private:
    ChildProcess ffmpeg_;
};

}  // namespace

void require_ffmpeg() {
    if (ChildProcess::is_installed(program)) return;
    throw std::runtime_error(
        std::string("films of this format are made by ffmpeg, which is not installed: apt-get install ") +
        program + ", or record to a .png, which needs nothing and is animated, too");
}

std::unique_ptr<Film> make_ffmpeg_film(const std::string& path, FilmFormat format, int width, int height) {
    return std::make_unique<FfmpegFilm>(command(path, format, width, height));
}

}  // namespace player
