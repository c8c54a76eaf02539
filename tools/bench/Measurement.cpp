#include "Measurement.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t turns = 7;

double median(std::array<double, turns> values)
{
    std::sort(values.begin(), values.end());
    return values[turns / 2];
}

} // namespace

Measurement inTurns(const std::function<double()> &yardstick,
                    const std::function<double()> &measured)
{
    yardstick();
    measured();
    std::array<double, turns> yardsticks{};
    std::array<double, turns> ours{};
    std::array<double, turns> ratios{};
    for (std::size_t i = 0; i < turns; ++i) {
        yardsticks[i] = yardstick();
        ours[i] = measured();
        ratios[i] = ours[i] / yardsticks[i];
    }
    return {median(yardsticks), median(ours), median(ratios)};
}
