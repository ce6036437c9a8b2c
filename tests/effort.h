// How long random tests go on: SCROLL2D_EFFORT, per cent of the rounds that they ask for, 100 when it is not
// set.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace tests {

inline int rounds(int whole) {
    const char* effort = std::getenv("SCROLL2D_EFFORT");
    if (effort == nullptr) return whole;
    return static_cast<int>(std::max<std::int64_t>(1, std::int64_t{whole} * std::atoi(effort) / 100));
}

}  // namespace tests
