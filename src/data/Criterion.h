#pragma once

#include <QString>

#include <string>
#include <variant>

enum class Comparison { Equal, Like };

// A search criterion, parsed.
struct Criterion {
    std::string field;
    Comparison comparison = Comparison::Equal;
    std::variant<qint64, std::string> value; // a key, or UTF-8 text

    // Throws DatabaseError, naming the text, where it is none of the forms above the parser.
    static Criterion parse(const QString &text);
};

// The criterion's text for a field and a value; a quote inside the value is written twice.
QString criterion(QLatin1StringView field, Comparison comparison, const QString &value);
QString criterion(QLatin1StringView field, qint64 key);
