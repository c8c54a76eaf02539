#pragma once

#include <QVariant>

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

enum class FieldType {
    Key, // a counter or the key of another table's row; never converted from text
    Text,
    WholeNumber, // 16 bits
    Number, // what a double holds; whole values are stored as integers
    YesNo, // stored as 1 and 0
};

struct Blob {
    std::string_view bytes;

    bool operator==(const Blob &) const = default;
};

// The value of one cell: null, an integer, a floating-point number, UTF-8 text or a blob. SQLite
// stores a type with each cell, which may differ from the one that the column declares. The bytes
// of a text or a blob belong to the row that the cell was read from.
using Cell = std::variant<std::monostate, qint64, double, std::string_view, Blob>;

// A cell's value that owns its text: what is written and what is searched for, which is never a
// blob.
using FieldValue = std::variant<std::monostate, qint64, double, std::string>;

// One value for each column of a row, or nothing for a column that is not written.
using FieldValues = std::vector<std::optional<FieldValue>>;

// The value as a cell, valid as long as `value` is.
Cell toCell(const FieldValue &value);

// What callers of the data layer see: null is an invalid variant, text a QString, a blob a
// QByteArray.
QVariant toVariant(const Cell &cell);

// The value that a field of this type stores for `value`, or nothing if the field does not accept
// it. Text is converted to a number without regard to the locale or to spaces at its ends. A whole
// number is an optional sign and digits; a number may also have a point followed by digits; yes and
// no are True and False in any case, or a whole number. The text of the second overload is UTF-8.
std::optional<FieldValue> convertToField(FieldType type, const QVariant &value);
std::optional<FieldValue> convertToField(FieldType type, std::string_view text);

// Whether a number field accepts the text and the text has no minus sign. Empty text counts as 0.
bool isNotNegative(const QString &text);

// The position in a list of types or ratings that a stored value means; -1 if it is not an integer.
// It may be beyond the list, for which QComboBox::setCurrentIndex() selects no entry.
int storedPosition(const QVariant &stored);

// A stored value as windows show it. A number has decimal digits, a point and never an exponent,
// so that its field accepts the text again. Null gives empty text.
QString displayText(const QVariant &stored);
