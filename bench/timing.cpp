#include "bench/timing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

double microseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// What a processor learned at the branches of an earlier turn, which began at the same place, would flatter
// the next one. Branches by chance take the room of all that.
void forget_branches() {
    static std::uint32_t number = 1;
    volatile std::uint32_t heads = 0;
    for (int i = 0; i < 50000; ++i) {
        number ^= number << 13;
        number ^= number >> 17;
        number ^= number << 5;
        if ((number & 1) != 0) heads = heads + 1;
    }
}

// Timed in blocks, since reading the clock costs as much as a small pass.
double take_turn(const Contender& contender, int place, const Plan& plan, int& block) {
    if (contender.begin) contender.begin(place);
    forget_branches();
    for (int i = 0; i < contender.warm_passes; ++i) contender.pass();
    int passes = 0;
    double spent = 0;
    const Clock::time_point start = Clock::now();
    do {
        for (int i = 0; i < block; ++i) contender.pass();
        passes += block;
        spent = microseconds_since(start);
    } while (spent < plan.turn_microseconds ||
             (passes < plan.least_passes && spent < plan.patience * plan.turn_microseconds));
    block = std::max(1, passes / 4);
    return spent / passes;
}

}  // namespace

double geometric_mean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values) sum += std::log(value);
    return std::exp(sum / static_cast<double>(values.size()));
}

std::vector<Timing> time_side_by_side(const std::vector<Contender>& contenders, const Plan& plan) {
    std::vector<Timing> timings;
    for (const Contender& contender : contenders) timings.push_back({contender.name, 0});
    std::vector<int> blocks(contenders.size(), 1);
    for (int place = 0; place < plan.places; ++place) {
        std::vector<double> best(contenders.size(), std::numeric_limits<double>::infinity());
        for (int round = 0; round < plan.rounds; ++round) {
            for (std::size_t i = 0; i < contenders.size(); ++i) {
                if (round >= contenders[i].most_rounds) continue;
                best[i] = std::min(best[i], take_turn(contenders[i], place, plan, blocks[i]));
            }
        }
        for (std::size_t i = 0; i < contenders.size(); ++i) timings[i].microseconds += best[i] / plan.places;
    }
    return timings;
}

}  // namespace bench
