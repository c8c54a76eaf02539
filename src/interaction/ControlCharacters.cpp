#include "interaction/ControlCharacters.h"

#include <QList>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isInvisible(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

QString escapeControlCharacters(const QString &text)
{
    constexpr char16_t controlPictures = 0x2400;
    QString escaped;
    for (const char32_t c : text.toUcs4()) {
        if (c < 0x20)
            escaped += QChar(static_cast<char16_t>(controlPictures + c));
        else if (isInvisible(c))
            escaped += QString::asprintf("<U+%04X>", uint(c));
        else
            escaped += QChar::fromUcs4(c);
    }
    return escaped;
}

QString excerpt(const QString &text, qsizetype longest)
{
    if (text.size() <= longest)
        return escapeControlCharacters(text);
    const bool insidePair = text.at(longest - 1).isHighSurrogate();
    return escapeControlCharacters(text.left(insidePair ? longest - 1 : longest)) + "..."_L1;
}
