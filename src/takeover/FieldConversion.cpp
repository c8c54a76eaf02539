#include "takeover/FieldConversion.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>
#include <limits>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(FieldConversion)
};

// The reader gives each whole number that fits into 64 bits as an integer.
template <typename Integer>
std::optional<Cell> integerCell(const oldfiles::Value &value)
{
    const auto *number = std::get_if<qint64>(&value);
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
    const auto *number = std::get_if<double>(&value);
    if (!number)
        return {};
    if (std::isnan(*number))
        return Text::tr("not a number");
    return std::isinf(*number) ? Text::tr("infinite")
                               : QString::number(*number, 'g', QLocale::FloatingPointShortest);
}

std::optional<qint32> keyOf(const oldfiles::Value &value)
{
    const std::optional<Cell> cell = integerCell<qint32>(value);
    return cell ? std::optional(static_cast<qint32>(std::get<qint64>(*cell))) : std::nullopt;
}
