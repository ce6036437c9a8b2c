#include <array>
#include <cstdio>
#include <filesystem>

#include "player/output.h"

namespace player {
namespace {

class Shots final : public Output {
  public:
    explicit Shots(const Options& options) : options_(options) {
        if (!options_.shots_folder.empty()) std::filesystem::create_directories(options_.shots_folder);
    }

    [[nodiscard]] bool wants(int frame, bool last) const override {
        return last || frame % options_.every == 0;
    }

    void take(const Picture& screen, int frame) override {
        if (!options_.shots_folder.empty()) {
            std::array<char, 32> name{};
            std::snprintf(name.data(), name.size(), "frame_%05d.png", frame);
            write_png((std::filesystem::path(options_.shots_folder) / name.data()).string(),
                      options_.scale == 1 ? screen : enlarged(screen, options_.scale));
        }
        if (!options_.sheet.empty()) keep_for_sheet(screen);
    }

    void finish() override {
        if (!kept_.empty()) write_png(options_.sheet, contact_sheet(kept_));
    }

  private:
    // A long run must not fill the memory: beyond this many, every other shot is dropped and fewer are kept.
    static constexpr std::size_t most_kept = 48;

    void keep_for_sheet(const Picture& screen) {
        if (taken_++ % stride_ != 0) return;
        if (kept_.size() == most_kept) {
            std::size_t left = 0;
            for (std::size_t i = 0; i < kept_.size(); i += 2) kept_[left++] = std::move(kept_[i]);
            kept_.resize(left);
            stride_ *= 2;
        }
        kept_.push_back(screen);
    }

    Options options_;
    std::vector<Picture> kept_;
    unsigned taken_ = 0;
    unsigned stride_ = 1;
};

}  // namespace

std::unique_ptr<Output> make_shots(const Options& options) {
    return std::make_unique<Shots>(options);
}

}  // namespace player
