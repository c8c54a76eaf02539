#include "Measurement.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace {

constexpr std::size_t rounds = 7;
constexpr double notMeasured = std::numeric_limits<double>::quiet_NaN();

using Costs = std::array<Cost, rounds>;

// Returns the median of a number that is computed from the costs of each round.
template <typename Number>
double medianOfRounds(const Costs &baselines, const Costs &measured, Number number)
{
    std::array<double, rounds> values{};
    std::transform(baselines.begin(), baselines.end(), measured.begin(), values.begin(), number);
    std::sort(values.begin(), values.end());
    return values[rounds / 2];
}

} // namespace

Measurement compare(const std::function<Cost()> &baseline, const std::function<Cost()> &measured)
{
    baseline();
    measured();
    Costs baselines{};
    Costs ours{};
    for (std::size_t i = 0; i < rounds; ++i) {
        baselines[i] = baseline();
        ours[i] = measured();
    }
    const auto median = [&](auto number) { return medianOfRounds(baselines, ours, number); };
    return {{median([](Cost base, Cost) { return base.value; }),
             median([](Cost base, Cost) { return base.cpuSeconds; })},
            {median([](Cost, Cost our) { return our.value; }),
             median([](Cost, Cost our) { return our.cpuSeconds; })},
            median([](Cost base, Cost our) { return our.value / base.value; }),
            median([](Cost base, Cost our) { return our.cpuSeconds / base.cpuSeconds; }),
            median([](Cost base, Cost our) { return our.value - base.value; })};
}

Measurement measuredOnce(double value)
{
    return {{notMeasured}, {value}, notMeasured, notMeasured, notMeasured};
}

double cpuSecondsOfProcess()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}
