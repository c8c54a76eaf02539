#include "data/FieldValue.h"

#include "data/GeneralFuctions.h"
#include "data/TextComparison.h"
#include "platform/Utf8.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr qint64 largest16 = std::numeric_limits<qint16>::max();
constexpr qint64 smallest16 = std::numeric_limits<qint16>::min();

bool areDigits(std::string_view text)
{
    return !text.empty()
        && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view withoutSign(std::string_view text)
{
    return text.starts_with('+') || text.starts_with('-') ? text.substr(1) : text;
}

// Nearly all numbers have so few digits that a double holds them exactly. Converting them here
// takes a twentieth of the time of QByteArrayView::toDouble().
double valueOfDigits(std::string_view digits)
{
    double value = 0;
    for (const char digit : digits)
        value = 10 * value + (digit - '0');
    return value;
}

std::optional<double> parsedNumber(std::string_view text)
{
    constexpr std::size_t exactDigits = 15;
    const std::string_view unsignedText = withoutSign(text);
    if (unsignedText.size() <= exactDigits && areDigits(unsignedText)) {
        const double value = valueOfDigits(unsignedText);
        return text.starts_with('-') ? -value : value;
    }
    const std::size_t point = unsignedText.find('.');
    const bool wellFormed = point == std::string_view::npos
        ? areDigits(unsignedText)
        : areDigits(unsignedText.substr(0, point)) && areDigits(unsignedText.substr(point + 1));
    if (!wellFormed)
        return {};
    bool ok = false;
    const double value = // in the C locale
        QByteArrayView(text.data(), static_cast<qsizetype>(text.size())).toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return {};
    return value;
}

std::optional<double> parsedWholeNumber(std::string_view text)
{
    return areDigits(withoutSign(text)) ? parsedNumber(text) : std::nullopt;
}

std::optional<double> numberOf(const QVariant &value)
{
    bool ok = false;
    const double converted = value.toDouble(&ok);
    if (!ok || !std::isfinite(converted))
        return {};
    return converted;
}

std::optional<FieldValue> key(const QVariant &value)
{
    if (value.typeId() == QMetaType::Double)
        return {};
    bool ok = false;
    const qint64 key = value.toLongLong(&ok);
    if (!ok)
        return {};
    return key;
}

std::optional<FieldValue> wholeNumber(std::optional<double> value)
{
    if (!value || std::trunc(*value) != *value || *value > largest16 || *value < smallest16)
        return {};
    return static_cast<qint64>(*value);
}

std::optional<FieldValue> number(std::optional<double> value)
{
    constexpr double beyondIntegers = 9223372036854775808.0; // 2^63
    if (!value)
        return {};
    if (std::abs(*value) < beyondIntegers && std::trunc(*value) == *value)
        return static_cast<qint64>(*value);
    return *value;
}

std::optional<FieldValue> yesNo(std::optional<double> value)
{
    if (!value)
        return {};
    return qint64{*value != 0 ? 1 : 0};
}

std::optional<FieldValue> yesNo(std::string_view text)
{
    if (textsEqual(text, "true"))
        return qint64{1};
    if (textsEqual(text, "false"))
        return qint64{0};
    return yesNo(parsedWholeNumber(text));
}

} // namespace

Cell toCell(const FieldValue &value)
{
    return std::visit([](const auto &held) { return Cell(held); }, value);
}

QVariant toVariant(const Cell &cell)
{
    if (const auto *text = std::get_if<std::string_view>(&cell))
        return platform::decodeUtf8(*text);
    if (const auto *integer = std::get_if<qint64>(&cell))
        return *integer;
    if (const auto *number = std::get_if<double>(&cell))
        return *number;
    if (const auto *blob = std::get_if<Blob>(&cell))
        return QByteArray(blob->bytes.data(), static_cast<qsizetype>(blob->bytes.size()));
    return {};
}

std::optional<FieldValue> convertToField(FieldType type, const QVariant &value)
{
    if (!value.isValid())
        return std::make_optional<FieldValue>();
    if (type == FieldType::Text || value.typeId() == QMetaType::QString)
        return convertToField(type, value.toString().toStdString());
    switch (type) {
    case FieldType::Key:
        return key(value);
    case FieldType::WholeNumber:
        return wholeNumber(numberOf(value));
    case FieldType::Number:
        return number(numberOf(value));
    case FieldType::YesNo:
        return yesNo(numberOf(value));
    case FieldType::Text:
        break;
    }
    return {};
}

std::optional<FieldValue> convertToField(FieldType type, std::string_view text)
{
    switch (type) {
    case FieldType::Text:
        return std::string(text);
    case FieldType::Key:
        return {};
    case FieldType::WholeNumber:
        return wholeNumber(parsedWholeNumber(trimSpaces(text)));
    case FieldType::Number:
        return number(parsedNumber(trimSpaces(text)));
    case FieldType::YesNo:
        return yesNo(trimSpaces(text));
    }
    return {};
}

bool isNotNegative(const QString &text)
{
    return text.isEmpty()
        || (!text.contains(u'-') && convertToField(FieldType::Number, text).has_value());
}

int storedPosition(const QVariant &stored)
{
    const qint64 position = stored.toLongLong();
    const bool isInteger =
        stored.typeId() == QMetaType::LongLong || stored.typeId() == QMetaType::Int;
    return isInteger && std::in_range<int>(position) ? static_cast<int>(position) : -1;
}

QString displayText(const QVariant &stored)
{
    if (stored.typeId() == QMetaType::Double)
        return QString::number(stored.toDouble(), 'f', QLocale::FloatingPointShortest);
    return stored.toString();
}
