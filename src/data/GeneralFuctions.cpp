#include "data/GeneralFuctions.h"

#include <algorithm>

QString ContainsInvalidChars(const QString &text)
{
    constexpr QStringView invalid = u"\\/:*?\"'<>|()";
    const bool holdsOne =
        std::any_of(invalid.begin(), invalid.end(), [&text](QChar c) { return text.contains(c); });
    return holdsOne ? QString() : text;
}
