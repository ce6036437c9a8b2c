#pragma once

#include <chrono>
#include <cstdio>
#include <string>

namespace bench {

// Tells on standard error how far a long run is, every few seconds.
class Progress {
  public:
    Progress(const char* part, int total) : part_(part), total_(total) {}

    void step(const std::string& name) {
        ++done_;
        const auto now = std::chrono::steady_clock::now();
        if (now < next_) return;
        next_ = now + std::chrono::seconds(3);
        std::fprintf(stderr, "%s: %d of %d (%s)\n", part_, done_, total_, name.c_str());
    }

  private:
    const char* part_;
    int total_;
    int done_ = 0;
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::seconds(3);
};

}  // namespace bench
