#include "ResultTable.h"

#include <QLocale>

#include <array>
#include <cstdio>

namespace {

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

std::string boundText(const Bound &bound, Unit unit)
{
    if (bound.kind == Bound::Kind::TimesYardstick)
        return formatted("%.3g times", bound.limit);
    return valueText(bound.limit, unit);
}

bool isMet(const Result &result)
{
    const Measurement &figures = result.measurement;
    return result.bound.limit
        >= (result.bound.kind == Bound::Kind::AtMost ? figures.measured : figures.ratio);
}

std::string ratioText(const Measurement &figures)
{
    if (figures.yardstick <= 0)
        return "-";
    return figures.ratio < 0.01 ? "< 0.01" : formatted("%.2f", figures.ratio);
}

} // namespace

std::string grouped(qint64 number)
{
    return QLocale(QLocale::English).toString(number).toStdString();
}

void printTableHead()
{
    std::puts("| work | recipes | plain | Pantrywise | ratio | bound | |");
    std::puts("|---|--:|--:|--:|--:|--:|---|");
}

void printResult(const Result &result)
{
    const Measurement &figures = result.measurement;
    std::printf("| %s | %s | %s | %s | %s | %s | %s |\n", result.work.c_str(),
                grouped(result.recipes).c_str(), valueText(figures.yardstick, result.unit).c_str(),
                valueText(figures.measured, result.unit).c_str(), ratioText(figures).c_str(),
                boundText(result.bound, result.unit).c_str(), isMet(result) ? "met" : "missed");
    std::fflush(stdout);
}
