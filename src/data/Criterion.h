#pragma once

#include "data/FieldValue.h"

#include <QString>

enum class Comparison { Equal, Like };

// A parsed search criterion.
struct Criterion {
    QByteArray field;
    Comparison comparison = Comparison::Equal;
    FieldValue value; // an integer (a key) or text

    // Throws DatabaseError with the text if it is not in the grammar, see Criterion.cpp.
    static Criterion parse(const QString &text);
};

// The text of a criterion for a field and a value. Quotes in the value are doubled.
QString criterion(QLatin1StringView field, Comparison comparison, const QString &value);
QString criterion(QLatin1StringView field, qint64 key);
