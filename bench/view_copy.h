// M, the measure of all things here: memcpy of the view, row by row, from a buffer of the view's size onto
// the screen.
#pragma once

#include <cstring>
#include <vector>

#include "bench/stage.h"

namespace bench {

class ViewCopy {
  public:
    // Copies back what the screen shows now.
    explicit ViewCopy(Stage& stage)
        : screen_(stage.screen().data()),
          pitch_(static_cast<std::size_t>(stage.pitch())),
          rows_(stage.view().height),
          buffer_(stage.screen().begin(), stage.screen().end()) {}

    void operator()() const {
        const std::byte* from = buffer_.data();
        std::byte* to = screen_;
        for (std::int32_t row = 0; row < rows_; ++row, from += pitch_, to += pitch_) {
            std::memcpy(to, from, pitch_);
        }
    }

  private:
    std::byte* screen_;
    std::size_t pitch_;
    std::int32_t rows_;
    std::vector<std::byte> buffer_;
};

}  // namespace bench
