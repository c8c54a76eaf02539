#include "data/FieldValue.h"

#include "data/GeneralFuctions.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr qint64 largest16 = std::numeric_limits<qint16>::max();
constexpr qint64 smallest16 = std::numeric_limits<qint16>::min();

bool areDigits(QStringView text)
{
    return !text.empty()
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

QStringView withoutSign(QStringView text)
{
    return text.startsWith(u'+') || text.startsWith(u'-') ? text.sliced(1) : text;
}

// Nearly all numbers have so few digits that a double holds them exactly. Converting them here
// takes a twentieth of the time of QStringView::toDouble().
double valueOfDigits(QStringView digits)
{
    double value = 0;
    for (const QChar digit : digits)
        value = 10 * value + (digit.unicode() - u'0');
    return value;
}

std::optional<double> parsedNumber(QStringView text)
{
    constexpr qsizetype exactDigits = 15;
    const QStringView unsignedText = withoutSign(text);
    if (unsignedText.size() <= exactDigits && areDigits(unsignedText)) {
        const double value = valueOfDigits(unsignedText);
        return text.startsWith(u'-') ? -value : value;
    }
    const qsizetype point = unsignedText.indexOf(u'.');
    const bool wellFormed = point < 0
        ? areDigits(unsignedText)
        : areDigits(unsignedText.first(point)) && areDigits(unsignedText.sliced(point + 1));
    bool ok = false;
    const double value = text.toDouble(&ok); // in the C locale
    if (!wellFormed || !ok || !std::isfinite(value))
        return {};
    return value;
}

std::optional<FieldValue> key(const QVariant &value)
{
    const int type = value.typeId();
    if (type == QMetaType::QString || type == QMetaType::Double)
        return {};
    bool ok = false;
    const qint64 key = value.toLongLong(&ok);
    if (!ok)
        return {};
    return key;
}

std::optional<double> numberOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return parsedNumber(trimSpaces(value.toString()));
    bool ok = false;
    const double converted = value.toDouble(&ok);
    if (!ok || !std::isfinite(converted))
        return {};
    return converted;
}

bool isWholeText(const QVariant &value)
{
    return value.typeId() != QMetaType::QString
        || areDigits(withoutSign(trimSpaces(value.toString())));
}

std::optional<FieldValue> wholeNumber(const QVariant &value)
{
    const std::optional<double> converted = numberOf(value);
    if (!converted || !isWholeText(value) || std::trunc(*converted) != *converted
        || *converted > largest16 || *converted < smallest16)
        return {};
    return static_cast<qint64>(*converted);
}

std::optional<FieldValue> number(const QVariant &value)
{
    constexpr double beyondIntegers = 9223372036854775808.0; // 2^63
    const std::optional<double> converted = numberOf(value);
    if (!converted)
        return {};
    if (std::abs(*converted) < beyondIntegers && std::trunc(*converted) == *converted)
        return static_cast<qint64>(*converted);
    return *converted;
}

std::optional<FieldValue> yesNo(const QVariant &value)
{
    const QString text = value.toString();
    const QStringView word = trimSpaces(text);
    if (word.compare(u"true", Qt::CaseInsensitive) == 0)
        return qint64{1};
    if (word.compare(u"false", Qt::CaseInsensitive) == 0)
        return qint64{0};
    const std::optional<double> converted = numberOf(value);
    if (!converted || !isWholeText(value))
        return {};
    return qint64{*converted != 0 ? 1 : 0};
}

// QString::fromUtf8() drops a leading byte order mark; here it is part of the text.
QString decodeText(std::string_view bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

} // namespace

Cell toCell(const FieldValue &value)
{
    return std::visit([](const auto &held) { return Cell(held); }, value);
}

QVariant toVariant(const Cell &cell)
{
    if (const auto *text = std::get_if<std::string_view>(&cell))
        return decodeText(*text);
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
    switch (type) {
    case FieldType::Text:
        return value.toString().toStdString();
    case FieldType::Key:
        return key(value);
    case FieldType::WholeNumber:
        return wholeNumber(value);
    case FieldType::Number:
        return number(value);
    case FieldType::YesNo:
        return yesNo(value);
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
