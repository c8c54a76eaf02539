#include "Measurement.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace {

constexpr double notMeasured = std::numeric_limits<double>::quiet_NaN();

using Costs = std::vector<Cost>;

// Returns the median of a number that is computed from the costs of each round.
template <typename Number>
double medianOfRounds(const Costs &baselines, const Costs &measured, Number number)
{
    std::vector<double> values(baselines.size());
    std::transform(baselines.begin(), baselines.end(), measured.begin(), values.begin(), number);
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

Measurement compare(const std::function<Cost()> &baseline, const std::function<Cost()> &measured,
                    int rounds)
{
    baseline();
    measured();
    Costs baselines;
    Costs ours;
    for (int i = 0; i < rounds; ++i) {
        baselines.push_back(baseline());
        ours.push_back(measured());
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
