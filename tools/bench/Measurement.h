#pragma once

#include <chrono>
#include <functional>

// The medians of a work and of its yardstick, in seconds or bytes, and of their ratios. The ratio
// of each turn is taken on its own, since other programs slow down whole turns.
struct Measurement {
    double yardstick;
    double measured;
    double ratio;
};

// Runs both seven times, one after the other, after a turn that does not count.
Measurement inTurns(const std::function<double()> &yardstick,
                    const std::function<double()> &measured);

template <typename Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Of one of many works, each of which is given its number.
template <typename Work>
double secondsOfOne(int count, Work work)
{
    return secondsOf([&] {
               for (int i = 0; i < count; ++i)
                   work(i);
           })
        / count;
}
