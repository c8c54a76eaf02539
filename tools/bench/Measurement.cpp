#include "Measurement.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr std::size_t rounds = 7;

double median(std::array<double, rounds> values)
{
    std::sort(values.begin(), values.end());
    return values[rounds / 2];
}

std::string formatted(const char *format, double value)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string valueText(double value, Unit unit)
{
    if (unit == Unit::Bytes)
        return formatted("%.1f MiB", value / (1024 * 1024));
    if (value < 1e-3)
        return formatted("%.3g µs", value * 1e6);
    return value < 1 ? formatted("%.3g ms", value * 1e3) : formatted("%.3g s", value);
}

std::string limitText(const Limit &limit, Unit unit)
{
    if (limit.kind == Limit::Kind::Ratio)
        return formatted("%.3g times", limit.value);
    return valueText(limit.value, unit);
}

bool isMet(const Result &result)
{
    const Measurement &measurement = result.measurement;
    return result.limit.value
        >= (result.limit.kind == Limit::Kind::Absolute ? measurement.measured : measurement.ratio);
}

std::string ratioText(const Measurement &measurement)
{
    if (measurement.baseline <= 0)
        return "-";
    return measurement.ratio < 0.01 ? "< 0.01" : formatted("%.2f", measurement.ratio);
}

} // namespace

Measurement compare(const std::function<double()> &baseline,
                    const std::function<double()> &measured)
{
    baseline();
    measured();
    std::array<double, rounds> baselines{};
    std::array<double, rounds> ours{};
    std::array<double, rounds> ratios{};
    for (std::size_t i = 0; i < rounds; ++i) {
        baselines[i] = baseline();
        ours[i] = measured();
        ratios[i] = ours[i] / baselines[i];
    }
    return {median(baselines), median(ours), median(ratios)};
}

std::string formatNumber(qint64 number)
{
    return QLocale(QLocale::English).toString(number).toStdString();
}

void printTableHeader()
{
    std::puts("| Benchmark | Recipes | Baseline | Pantrywise | Ratio | Limit | Result |");
    std::puts("|---|--:|--:|--:|--:|--:|---|");
}

void printResult(const Result &result)
{
    const Measurement &measurement = result.measurement;
    std::printf(
        "| %s | %s | %s | %s | %s | %s | %s |\n", result.name.c_str(),
        formatNumber(result.recipes).c_str(), valueText(measurement.baseline, result.unit).c_str(),
        valueText(measurement.measured, result.unit).c_str(), ratioText(measurement).c_str(),
        limitText(result.limit, result.unit).c_str(), isMet(result) ? "met" : "missed");
    std::fflush(stdout);
}
