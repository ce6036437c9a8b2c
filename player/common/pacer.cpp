#include "player/common/pacer.h"

#include <algorithm>
#include <cmath>

namespace player {

int Pacer::due(double now) {
    if (!started_) {
        started_ = true;
        next_ = now + period;
        return 1;
    }
    // A display in step is late or early by a part of a period only; half of one tells frame from frame.
    const double slack = locked_ ? period / 2 : 0;
    if (now + slack < next_) return 0;
    const double count = std::floor((now + slack - next_) / period) + 1;
    if (count > most_at_once) {
        next_ = now + period;
        return 1;
    }
    next_ = locked_ ? now + period : next_ + count * period;
    return static_cast<int>(count);
}

double Pacer::wait(double now) const {
    return started_ ? std::max(0.0, next_ - now) : 0;
}

}  // namespace player
