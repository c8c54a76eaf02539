#include "export/PageText.h"

#include "data/TypesAndRatings.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

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

bool isAsciiLineBreak(char character)
{
    return character >= '\n' && character <= '\r'; // and \v and \f
}

// Returns the first character that is not printable ASCII. Most texts have none, and need no
// conversion to UTF-16.
const char *findOther(const char *begin, const char *end)
{
    return std::find_if(begin, end,
                        [](char character) { return character < ' ' || character >= 0x7F; });
}

std::string withoutSpacesAround(std::string_view text)
{
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

// A byte order mark is part of the text.
QString fromUtf8(std::string_view text)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8(QByteArrayView(text));
}

// Splits the text at its line breaks.
QStringList linesOf(const QString &text)
{
    QStringList lines;
    for (auto begin = text.begin(); begin != text.end();) {
        const auto end = std::find_if(begin, text.end(), isLineBreak);
        lines += QString(begin, end - begin);
        begin = end == text.end() ? end : end + 1;
    }
    return lines;
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

std::string pageLine(std::string_view text)
{
    return findOther(text.begin(), text.end()) == text.end()
        ? withoutSpacesAround(text)
        : pageLine(fromUtf8(text)).toStdString();
}

std::vector<std::string> pageParagraphs(std::string_view text)
{
    std::vector<std::string> paragraphs;
    const auto add = [&paragraphs](std::string &&line) {
        if (!line.empty())
            paragraphs.push_back(std::move(line));
    };
    for (const auto *begin = text.begin(); begin != text.end();) {
        const auto *const other = findOther(begin, text.end());
        const auto *const end = std::find_if(other, text.end(), isAsciiLineBreak);
        const std::string_view line(begin, end);
        if (other == end) {
            add(withoutSpacesAround(line));
        } else {
            for (const QString &part : linesOf(fromUtf8(line)))
                add(pageLine(part).toStdString());
        }
        begin = end == text.end() ? end : end + 1;
    }
    return paragraphs;
}

QStringList pageTypes()
{
    return recipeTypes().replaceInStrings(u"Desert"_s, u"Dessert"_s);
}

QStringList pageRatings()
{
    return recipeRatings().replaceInStrings(u"recieved"_s, u"received"_s);
}
