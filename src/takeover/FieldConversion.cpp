#include "takeover/FieldConversion.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace {

// Returns the number if it is whole and not beyond 64 bits.
std::optional<qint64> wholeNumber(const oldfiles::Value &value)
{
    if (const auto *integer = std::get_if<qint64>(&value))
        return *integer;
    constexpr double beyond = 9223372036854775808.0; // 2^63
    const auto *number = std::get_if<double>(&value);
    if (number && *number >= -beyond && *number < beyond && std::trunc(*number) == *number)
        return static_cast<qint64>(*number);
    return {};
}

template <typename Integer>
std::optional<Cell> integerCell(const oldfiles::Value &value)
{
    const std::optional<qint64> number = wholeNumber(value);
    if (number && *number >= std::numeric_limits<Integer>::min()
        && *number <= std::numeric_limits<Integer>::max())
        return Cell(*number);
    return {};
}

std::optional<Cell> numberCell(const oldfiles::Value &value)
{
    if (const auto *number = std::get_if<double>(&value)) {
        if (std::isfinite(*number))
            return Cell(*number);
    } else if (const auto *integer = std::get_if<qint64>(&value)) {
        return Cell(*integer);
    }
    return {};
}

// Access stores -1 for yes.
std::optional<Cell> yesNoCell(const oldfiles::Value &value)
{
    if (const auto *yes = std::get_if<bool>(&value))
        return Cell(qint64{*yes ? 1 : 0});
    if (const auto *number = std::get_if<qint64>(&value))
        return Cell(qint64{*number != 0 ? 1 : 0});
    return {};
}

} // namespace

std::optional<Cell> convertToField(FieldType type, const oldfiles::Value &value)
{
    if (std::holds_alternative<std::monostate>(value))
        return Cell();
    switch (type) {
    case FieldType::Key:
        return integerCell<qint32>(value);
    case FieldType::WholeNumber:
        return integerCell<qint16>(value);
    case FieldType::Number:
        return numberCell(value);
    case FieldType::YesNo:
        return yesNoCell(value);
    case FieldType::Text:
        if (const auto *text = std::get_if<std::string_view>(&value))
            return Cell(*text);
        break;
    }
    return {};
}

QString displayNumber(const oldfiles::Value &value)
{
    if (const auto *integer = std::get_if<qint64>(&value))
        return QString::number(*integer);
    if (const auto *number = std::get_if<double>(&value))
        return QString::number(*number, 'g', QLocale::FloatingPointShortest);
    return {};
}
