#include <functional>
#include <optional>
#include <stdexcept>

#include "player/common/new_file.h"
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
        : path_(path), scale_(scale), format_(film_format(path).value()) {
        named([&] {
            if (format_ != FilmFormat::png) require_ffmpeg();
        });
    }

    [[nodiscard]] bool wants(int, bool) const override { return true; }

    // The first picture decides the film's size; a game may change its video mode later.
    void take(const Picture& screen, int) override {
        if (!film_) begin(screen.width * scale_, screen.height * scale_);
        const bool as_it_is = screen.width == width_ && screen.height == height_;
        ++frames_;
        named([&] { film_->add(as_it_is ? screen : fitted(screen, width_, height_)); });
    }

    std::vector<std::string> finish() override {
        if (!film_) return {};
        named([&] { film_->finish(); });
        file_->keep();
        return {"film: " + path_ + " (" + std::to_string(frames_) + " frames)"};
    }

  private:
    void begin(int width, int height) {
        width_ = width;
        height_ = height;
        file_.emplace(path_);
        named([&] {
            film_ = format_ == FilmFormat::png ? make_animated_png(file_->stream(), width, height)
                                               : make_ffmpeg_film(file_->beside(), format_, width, height);
        });
    }

    // What goes wrong is told with the film's name. Then nothing of it stays: half a film is none.
    void named(const std::function<void()>& step) {
        try {
            step();
        } catch (const std::runtime_error& error) {
            film_.reset();
            file_.reset();
            throw std::runtime_error(path_ + ": " + error.what());
        }
    }

    std::string path_;
    int scale_;
    FilmFormat format_;
    int width_ = 0;
    int height_ = 0;
    int frames_ = 0;
    std::optional<NewFile> file_;
    std::unique_ptr<Film> film_;
};

}  // namespace

std::unique_ptr<Output> make_recorder(const std::string& path, int scale) {
    return std::make_unique<Recorder>(path, scale);
}

}  // namespace player
