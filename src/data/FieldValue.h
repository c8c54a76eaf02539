#pragma once

#include <QVariant>

#include <optional>
#include <string>
#include <variant>

enum class FieldType {
    Key, // a counter or the key of another table's row; never converted from text
    Text,
    WholeNumber, // 16 bits
    Number, // what a double holds; whole values are stored as integers
    YesNo, // stored as 1 and 0
};

// What lies in a cell: nothing, an integer, a floating number or UTF-8 text.
using FieldValue = std::variant<std::monostate, qint64, double, std::string>;

// The value that a field of this type stores for `value`, or nothing where it does not take it.
// Text becomes a number as follows, with blanks around it dropped and no locale taking part: whole
// numbers from a sign or none and digits; numbers also with a point and digits; yes and no from
// True and False in any case or a whole number.
std::optional<FieldValue> convertToField(FieldType type, const QVariant &value);

// Whether a number field takes the text, without a minus, for what is counted in a window; the
// empty text stands for 0.
bool isNotNegative(const QString &text);
