#pragma once

#include "Measurement.h"

#include <QtGlobal>

#include <string>

enum class Unit { Seconds, Bytes };

struct Bound {
    enum class Kind { TimesYardstick, AtMost };
    Kind kind;
    double limit; // a ratio, or seconds or bytes
};

struct Result {
    std::string work; // says what the yardstick is where that is not plain SQLite at the same work
    int recipes; // in the database
    Unit unit;
    Measurement measurement;
    Bound bound;
};

// As people read it: 10,000.
std::string grouped(qint64 number);

// A Markdown table on standard output, each line written as soon as it is known.
void printTableHead();
void printResult(const Result &result);
