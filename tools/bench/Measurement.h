#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <string>

// Medians, in seconds or bytes, of what is measured and of the baseline with which it is compared.
// `ratio` is the median of the rounds' ratios, because other programs slow down whole rounds.
struct Measurement {
    double baseline;
    double measured;
    double ratio;
};

// Calls both functions alternately, in seven rounds after one that is not counted. Each function
// returns what it has measured, in seconds or bytes.
Measurement compare(const std::function<double()> &baseline,
                    const std::function<double()> &measured);

template <typename Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Calls work(i) for each i from 0 to count - 1. Returns the mean time of one call.
template <typename Work>
double secondsPerCall(int count, Work work)
{
    return secondsOf([&] {
               for (int i = 0; i < count; ++i)
                   work(i);
           })
        / count;
}

enum class Unit { Seconds, Bytes };

struct Limit {
    enum class Kind { Ratio, Absolute };
    Kind kind;
    double value; // a ratio to the baseline, or seconds or bytes
};

// A row of the table of results.
struct Result {
    std::string name; // names the baseline if that is not the same work in plain SQLite
    int recipes; // number of recipes in the database
    Unit unit;
    Measurement measurement;
    Limit limit;
};

// Returns the number with a separator for thousands: 10,000.
std::string formatNumber(qint64 number);

// Print a Markdown table on standard output. Each row is flushed at once.
void printTableHeader();
void printResult(const Result &result);
