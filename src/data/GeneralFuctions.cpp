#include "data/GeneralFuctions.h"

#include <algorithm>

QString ContainsInvalidChars(const QString &text)
{
    constexpr QStringView invalid = u"\\/:*?\"'<>|()";
    const bool holdsOne =
        std::any_of(invalid.begin(), invalid.end(), [&text](QChar c) { return text.contains(c); });
    return holdsOne ? QString() : text;
}

QStringView trimSpaces(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

std::string_view trimSpaces(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}
