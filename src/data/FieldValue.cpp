#include "FieldValue.h"

#include "Blanks.h"

#include <cmath>
#include <limits>

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

FieldValue number(double value)
{
    constexpr double integersUpTo = 9007199254740992.0; // 2^53: beyond, a double skips integers
    if (std::abs(value) <= integersUpTo && std::trunc(value) == value)
        return static_cast<qint64>(value);
    return value;
}

std::optional<double> parsedNumber(QStringView text)
{
    const QStringView unsignedText = withoutSign(text);
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

std::optional<double> numberOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return parsedNumber(withoutBlanks(value.toString()));
    bool ok = false;
    const double converted = value.toDouble(&ok);
    if (!ok || !std::isfinite(converted))
        return {};
    return converted;
}

bool isWholeText(const QVariant &value)
{
    return value.typeId() != QMetaType::QString
        || areDigits(withoutSign(withoutBlanks(value.toString())));
}

std::optional<FieldValue> wholeNumber(const QVariant &value)
{
    const std::optional<double> converted = numberOf(value);
    if (!converted || !isWholeText(value) || std::trunc(*converted) != *converted
        || *converted > largest16 || *converted < smallest16)
        return {};
    return static_cast<qint64>(*converted);
}

std::optional<FieldValue> yesNo(const QVariant &value)
{
    const QString text = value.toString();
    const QStringView word = withoutBlanks(text);
    if (word.compare(u"true", Qt::CaseInsensitive) == 0)
        return qint64{1};
    if (word.compare(u"false", Qt::CaseInsensitive) == 0)
        return qint64{0};
    const std::optional<double> converted = numberOf(value);
    if (!converted || !isWholeText(value))
        return {};
    return qint64{*converted != 0 ? 1 : 0};
}

} // namespace

std::optional<FieldValue> storedValue(FieldType type, const QVariant &value)
{
    if (!value.isValid())
        return FieldValue{};
    switch (type) {
    case FieldType::Text:
        return value.toString().toStdString();
    case FieldType::Key: {
        bool ok = false;
        const qint64 key = value.toLongLong(&ok);
        return ok ? std::optional<FieldValue>(key) : std::nullopt;
    }
    case FieldType::WholeNumber:
        return wholeNumber(value);
    case FieldType::Number: {
        const std::optional<double> converted = numberOf(value);
        return converted ? std::optional<FieldValue>(number(*converted)) : std::nullopt;
    }
    case FieldType::YesNo:
        return yesNo(value);
    }
    return {};
}
