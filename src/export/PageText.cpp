#include "export/PageText.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(PageText)
};

bool isLineBreak(QChar character)
{
    switch (character.unicode()) {
    case '\n':
    case '\v':
    case '\f':
    case '\r':
    case 0x85:
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
        return true;
    default:
        return false;
    }
}

// A surrogate may be unpaired, or half of a noncharacter.
bool mayBeInvalid(QChar unit)
{
    return unit.unicode() < u' ' || (unit.unicode() >= 0x7F && unit.unicode() < 0xA0)
        || unit.isSurrogate() || unit.isNonCharacter();
}

bool isPrintable(char32_t character)
{
    return QChar::category(character) != QChar::Other_Control
        && QChar::category(character) != QChar::Other_Surrogate
        && !QChar::isNonCharacter(character);
}

} // namespace

QString pageLine(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), mayBeInvalid))
        return text.trimmed();
    QString line;
    line.reserve(text.size());
    const auto characters = text.toUcs4();
    for (const char32_t character : characters) {
        if (character == U'\t' || (character <= 0xFFFF && isLineBreak(QChar(character))))
            line += u' ';
        else if (isPrintable(character))
            line += QChar::fromUcs4(character);
    }
    return line.trimmed();
}

QString pageTitle(const QString &text)
{
    const QString title = pageLine(text);
    return title.isEmpty() ? Text::tr("Untitled recipe") : title;
}

QStringList pageParagraphs(const QString &text)
{
    QStringList paragraphs;
    for (auto begin = text.begin(); begin != text.end();) {
        const auto end = std::find_if(begin, text.end(), isLineBreak);
        const QString line = pageLine(QString(begin, end - begin));
        if (!line.isEmpty())
            paragraphs += line;
        begin = end == text.end() ? end : end + 1;
    }
    return paragraphs;
}
