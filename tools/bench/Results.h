#pragma once

#include "Measurement.h"

#include <QString>

#include <fstream>
#include <string>

enum class Unit { Seconds, Bytes };

// What a measurement must not exceed. CPU times have no limits: they tell what part of a wall time
// is waiting for the disk or for other programs.
struct Limit {
    enum class Kind {
        Ratio, // of the values to the baseline
        Difference, // from the baseline, in seconds or bytes
        Absolute, // in seconds or bytes
    };
    Kind kind;
    double value;
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

// Prints results as a Markdown table on standard output, and writes them to a CSV file if `csvPath`
// is not empty. Each row is flushed at once. The constructor throws std::runtime_error if the file
// cannot be written.
class Results
{
public:
    explicit Results(const QString &csvPath);

    void add(const Result &result);

private:
    std::ofstream m_csv;
};
