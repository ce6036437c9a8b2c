#include <array>
#include <cstdio>
#include <filesystem>

#include "player/output/contact_sheet.h"
#include "player/output/output.h"

namespace player {
namespace {

namespace fs = std::filesystem;

std::string shot_name(int frame) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "frame_%05d.png", frame);
    return name.data();
}

bool is_shot(const fs::directory_entry& entry) {
    const std::string name = entry.path().filename().string();
    int frame = 0;
    return fs::is_regular_file(entry.symlink_status()) &&
           std::sscanf(name.c_str(), "frame_%d", &frame) == 1 && name == shot_name(frame);
}

class Shots final : public Output {
  public:
    explicit Shots(const Options& options) : options_(options) {}

    [[nodiscard]] bool wants(int frame, bool last) const override {
        return last || frame % options_.every == 0;
    }

    void take(const Picture& screen, int frame) override {
        if (!options_.shots_folder.empty()) {
            write_png((fs::path(options_.shots_folder) / shot_name(frame)).string(),
                      options_.scale == 1 ? screen : enlarged(screen, options_.scale));
            ++written_;
        }
        if (!options_.sheet.empty()) keep_for_sheet(screen);
    }

    std::vector<std::string> finish() override {
        std::vector<std::string> lines;
        if (written_ > 0)
            lines.push_back("pictures: " + options_.shots_folder + "/ (" + std::to_string(written_) + ")");
        if (kept_.empty()) return lines;
        write_png(options_.sheet, contact_sheet(kept_));
        lines.push_back("contact sheet: " + options_.sheet);
        return lines;
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
    int written_ = 0;
    std::vector<Picture> kept_;
    unsigned taken_ = 0;
    unsigned stride_ = 1;
};

}  // namespace

void remove_shots(const std::string& folder) {
    if (!fs::is_directory(folder)) return;
    for (const auto& entry : fs::directory_iterator(folder))
        if (is_shot(entry)) fs::remove(entry.path());
}

std::unique_ptr<Output> make_shots(const Options& options) {
    return std::make_unique<Shots>(options);
}

}  // namespace player
