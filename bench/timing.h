// Side-by-side timing. Contenders take turns, round after round, so that a change of clock speed or a busy
// neighbour meets them all. A turn is several untimed passes, then as many timed ones as fill its time.
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
    int rounds = 7;
    double turn_microseconds = 600;  // least timed part of a turn, and at least one pass
};

struct Timing {
    std::string name;
    std::vector<double> rounds;  // microseconds a pass, in each round

    [[nodiscard]] double median() const;
};

// One timing per contender, in their order.
[[nodiscard]] std::vector<Timing> time_side_by_side(const std::vector<Contender>& contenders,
                                                    const Plan& plan);

// How many times `base` a contender takes: the median over the rounds of the quotient within each round.
[[nodiscard]] double ratio(const Timing& timing, const Timing& base);

// The middle value; the mean of the two middle ones. `values` is not empty.
[[nodiscard]] double median(std::vector<double> values);
// exp of the mean logarithm. `values` is not empty and positive.
[[nodiscard]] double geometric_mean(const std::vector<double>& values);

}  // namespace bench
