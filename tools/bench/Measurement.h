#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <limits>

// What one turn of a benchmark takes.
struct Cost {
    double value; // seconds of wall time, or bytes
    double cpuSeconds = std::numeric_limits<double>::quiet_NaN(); // NaN if it is not measured
};

inline Cost operator/(Cost cost, double divisor)
{
    return {cost.value / divisor, cost.cpuSeconds / divisor};
}

// Medians of several rounds: of what is measured and of the baseline with which it is compared.
// Ratios and the difference are those of a round, because other programs slow down whole rounds. A
// number that is not measured is NaN.
struct Measurement {
    Cost baseline;
    Cost measured;
    double ratio; // measured / baseline
    double cpuRatio;
    double difference; // measured - baseline
};

constexpr int usualRounds = 7;

// Calls both functions alternately, in this number of rounds, after one that is not counted. The
// number of rounds must be odd.
Measurement compare(const std::function<Cost()> &baseline, const std::function<Cost()> &measured,
                    int rounds = usualRounds);

// Returns the measurement of something that has no baseline and is the same at every time.
Measurement measuredOnce(double value);

// Returns the seconds of CPU time, user and system, that this process has used.
double cpuSecondsOfProcess();

template <typename Work>
Cost secondsOf(Work work)
{
    const double cpuStart = cpuSecondsOfProcess();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    return {seconds.count(), cpuSecondsOfProcess() - cpuStart};
}

// Calls work(i) for each i from 0 to count - 1. Returns the mean cost of one call.
template <typename Work>
Cost secondsPerCall(int count, Work work)
{
    return secondsOf([&] {
               for (int i = 0; i < count; ++i)
                   work(i);
           })
        / count;
}
