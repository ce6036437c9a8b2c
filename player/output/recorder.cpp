#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "player/common/placement.h"
#include "player/output/film.h"
#include "player/output/output.h"

namespace player {
namespace {

// The picture in the middle of one of another size, in squares of one size where it fits.
Picture fitted(const Picture& picture, int width, int height) {
    Picture result(width, height, {0, 0, 0, 255});
    const Area at = place_screen(picture.width, picture.height, {0, 0, width, height}).at;
    for (int y = 0; y < at.height; ++y)
        for (int x = 0; x < at.width; ++x)
            result.at(at.x + x, at.y + y) =
                picture.at(x * picture.width / at.width, y * picture.height / at.height);
    return result;
}

class Recorder final : public Output {
  public:
    Recorder(const std::string& path, int scale)
        : path_(path), scale_(scale), ours_(std::filesystem::path(path).extension() == ".png") {
        if (!ours_) require_ffmpeg(path);
    }

    [[nodiscard]] bool wants(int, bool) const override { return true; }

    // The first picture decides the film's size; a game may change its video mode later.
    void take(const Picture& screen, int) override {
        if (!film_) {
            width_ = screen.width * scale_;
            height_ = screen.height * scale_;
            film_ =
                ours_ ? make_animated_png(path_, width_, height_) : make_ffmpeg_film(path_, width_, height_);
        }
        const bool as_it_is = screen.width == width_ && screen.height == height_;
        ++frames_;
        whole([&] { film_->add(as_it_is ? screen : fitted(screen, width_, height_)); });
    }

    std::vector<std::string> finish() override {
        if (!film_) return {};
        whole([&] { film_->finish(); });
        return {"film: " + path_ + " (" + std::to_string(frames_) + " frames)"};
    }

  private:
    // A film that could not be written to its end is no film: nothing of it stays.
    void whole(const std::function<void()>& step) {
        try {
            step();
        } catch (...) {
            film_.reset();
            std::error_code error;
            if (std::filesystem::is_regular_file(path_, error)) std::filesystem::remove(path_, error);
            throw;
        }
    }

    std::string path_;
    int scale_;
    bool ours_;
    int width_ = 0;
    int height_ = 0;
    int frames_ = 0;
    std::unique_ptr<Film> film_;
};

}  // namespace

std::string film_problem(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    const std::vector<std::string> known{".mp4", ".webm", ".gif", ".png"};
    if (std::find(known.begin(), known.end(), extension) != known.end()) return {};
    return path + ": films end with .mp4, .webm, .gif or .png (animated)";
}

std::unique_ptr<Output> make_recorder(const std::string& path, int scale) {
    return std::make_unique<Recorder>(path, scale);
}

}  // namespace player
