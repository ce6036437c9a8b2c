// Side-by-side timing. Contenders take turns, round after round, so that a change of clock speed or a busy
// neighbour meets them all. A turn is several untimed passes, then as many timed ones as fill its time. What
// counts is the best of many short turns: whatever disturbs a turn only ever makes it longer.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Contender {
    std::string name;
    std::function<void()> pass;  // one frame, one copy, one move
    int warm_passes = 5;         // untimed, at the start of each turn
};

struct Plan {
    int rounds = 9;
    double turn_microseconds = 400;  // least timed part of a turn
    int least_passes = 4;            // of a turn, since frames of a moving scroll differ in cost
    double patience = 10;            // turns that take that many times too long may have fewer
};

struct Timing {
    std::string name;
    double microseconds;  // a pass, in the contender's best turn
};

// One timing per contender, in their order.
[[nodiscard]] std::vector<Timing> time_side_by_side(const std::vector<Contender>& contenders,
                                                    const Plan& plan);

// exp of the mean logarithm. `values` is not empty and positive.
[[nodiscard]] double geometric_mean(const std::vector<double>& values);

}  // namespace bench
