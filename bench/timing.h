// Side-by-side timing. Contenders take turns, round after round, so that a change of clock speed or a busy
// neighbour meets them all. A turn is several untimed passes, then as many timed ones as fill its time. What
// counts is the best of several short turns: whatever disturbs a turn only ever makes it longer.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Contender {
    std::string name;
    std::function<void()> pass;            // one frame, one copy, one move
    std::function<void(int place)> begin;  // untimed, before each turn; may be empty
    int warm_passes = 5;                   // untimed, at the start of each turn
    int most_rounds = 100;                 // of those that the plan has; fewer where passes are long
};

// What a frame costs depends on what it shows. So every contender begins its turns at the same few places, as
// many turns at each.
struct Plan {
    int places = 3;
    int rounds = 3;                  // turns of each contender at a place
    double turn_microseconds = 400;  // least timed part of a turn
    int least_passes = 4;            // of a turn, since frames of a moving scroll differ in cost
    double patience = 10;            // turns that take that many times too long may have fewer
};

struct Timing {
    std::string name;
    double microseconds;  // a pass: the mean over the places of the contender's best turn there
};

// One timing per contender, in their order.
[[nodiscard]] std::vector<Timing> time_side_by_side(const std::vector<Contender>& contenders,
                                                    const Plan& plan);

// exp of the mean logarithm. `values` is not empty and positive.
[[nodiscard]] double geometric_mean(const std::vector<double>& values);

}  // namespace bench
