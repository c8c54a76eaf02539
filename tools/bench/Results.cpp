#include "Results.h"

#include <QLocale>

#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace {

constexpr double kilobyte = 1000;
constexpr double mebibyte = 1024.0 * 1024.0;

std::string formatted(const char *format, double value)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string secondsText(double seconds)
{
    if (seconds < 1e-3)
        return formatted("%.3g µs", seconds * 1e6);
    return seconds < 1 ? formatted("%.3g ms", seconds * 1e3) : formatted("%.3g s", seconds);
}

std::string valueText(double value, Unit unit)
{
    if (unit == Unit::Seconds)
        return secondsText(value);
    return value < mebibyte ? formatted("%.0f kB", value / kilobyte)
                            : formatted("%.1f MiB", value / mebibyte);
}

// The CPU time stands in parentheses.
std::string costText(const Cost &cost, Unit unit)
{
    if (std::isnan(cost.value))
        return "-";
    const std::string text = valueText(cost.value, unit);
    return std::isnan(cost.cpuSeconds) ? text : text + " (" + secondsText(cost.cpuSeconds) + ')';
}

std::string ratioText(double ratio)
{
    return ratio < 0.01 ? "< 0.01" : formatted("%.2f", ratio);
}

std::string ratioText(const Measurement &measurement)
{
    if (!(measurement.baseline.value > 0))
        return "-";
    const std::string text = ratioText(measurement.ratio);
    return std::isnan(measurement.cpuRatio) ? text
                                            : text + " (" + ratioText(measurement.cpuRatio) + ')';
}

std::string limitText(const Limit &limit, Unit unit)
{
    switch (limit.kind) {
    case Limit::Kind::Ratio:
        return formatted("%.3g times", limit.value);
    case Limit::Kind::Difference:
        return valueText(limit.value, unit) + " more";
    case Limit::Kind::Absolute:
        break;
    }
    return valueText(limit.value, unit);
}

const char *limitedValueName(Limit::Kind kind)
{
    switch (kind) {
    case Limit::Kind::Ratio:
        return "ratio";
    case Limit::Kind::Difference:
        return "difference";
    case Limit::Kind::Absolute:
        break;
    }
    return "pantrywise";
}

double limitedValue(const Measurement &measurement, Limit::Kind kind)
{
    switch (kind) {
    case Limit::Kind::Ratio:
        return measurement.ratio;
    case Limit::Kind::Difference:
        return measurement.difference;
    case Limit::Kind::Absolute:
        break;
    }
    return measurement.measured.value;
}

bool isMet(const Result &result)
{
    return limitedValue(result.measurement, result.limit.kind) <= result.limit.value;
}

// Returns a field of a CSV file, which is empty if the number was not measured.
std::string csvNumber(double number)
{
    return std::isfinite(number) ? formatted("%.9g", number) : std::string();
}

std::string csvText(const std::string &text)
{
    return QString::fromStdString(text).replace(u'"', QStringLiteral("\"\"")).toStdString();
}

} // namespace

std::string formatNumber(qint64 number)
{
    return QLocale(QLocale::English).toString(number).toStdString();
}

Results::Results(const QString &csvPath)
{
    if (!csvPath.isEmpty()) {
        m_csv.open(csvPath.toStdString());
        m_csv << "benchmark,recipes,unit,baseline,pantrywise,baseline_cpu_seconds,"
                 "pantrywise_cpu_seconds,ratio,cpu_ratio,difference,limit_on,limit,met"
              << std::endl;
        if (!m_csv)
            throw std::runtime_error("the CSV file cannot be written");
    }
    std::puts("| Benchmark | Recipes | Baseline (CPU) | Pantrywise (CPU) | Ratio (CPU) | Limit | "
              "Result |");
    std::puts("|---|--:|--:|--:|--:|--:|---|");
}

void Results::add(const Result &result)
{
    const Measurement &measurement = result.measurement;
    std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", result.name.c_str(),
                formatNumber(result.recipes).c_str(),
                costText(measurement.baseline, result.unit).c_str(),
                costText(measurement.measured, result.unit).c_str(), ratioText(measurement).c_str(),
                limitText(result.limit, result.unit).c_str(), isMet(result) ? "met" : "missed");
    std::fflush(stdout);
    m_csv << '"' << csvText(result.name) << "\"," << result.recipes << ','
          << (result.unit == Unit::Seconds ? "seconds" : "bytes");
    for (const double number : {measurement.baseline.value, measurement.measured.value,
                                measurement.baseline.cpuSeconds, measurement.measured.cpuSeconds,
                                measurement.ratio, measurement.cpuRatio, measurement.difference})
        m_csv << ',' << csvNumber(number);
    m_csv << ',' << limitedValueName(result.limit.kind) << ',' << csvNumber(result.limit.value)
          << ',' << (isMet(result) ? "yes" : "no") << std::endl;
}
