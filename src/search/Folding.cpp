#include "search/Folding.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>
#include <memory>

namespace {

constexpr char foldedAscii(char c)
{
    if (c >= 'A' && c <= 'Z')
        return static_cast<char>(c + ('a' - 'A'));
    if (c >= '\t' && c <= '\r')
        return ' ';
    return c == '`' ? '\'' : c;
}

bool isApostrophe(char32_t c)
{
    return c == U'‘' || c == U'’' || c == U'ʼ' || c == U'´';
}

// Marks of the other combining classes are vowels, tones, voicing marks and the like, without which
// a word of their script is another word.
bool isAccent(char32_t c)
{
    constexpr int overlay = 1;
    constexpr int firstPoint = 10; // of Hebrew, Arabic and Syriac
    constexpr int lastPoint = 36;
    constexpr int firstAttached = 200; // to a letter of any script
    const int combiningClass = QChar::combiningClass(c);
    return combiningClass == overlay || combiningClass >= firstAttached
        || (combiningClass >= firstPoint && combiningClass <= lastPoint);
}

QString withoutAccents(const QString &decomposed)
{
    QString letters;
    for (const char32_t c : decomposed.toUcs4()) {
        if (!isAccent(c))
            letters += QStringView(QChar::fromUcs4(c));
    }
    return letters;
}

std::string foldedCharacter(char32_t c)
{
    constexpr char32_t fractionSlash = 0x2044;
    if (c < 0x80)
        return {foldedAscii(static_cast<char>(c))};
    if (QChar::isSpace(c))
        return " ";
    if (isApostrophe(c))
        return "'";
    if (QChar::category(c) == QChar::Punctuation_Dash || c == U'−')
        return "-";
    if (QChar::category(c) == QChar::Other_Format || isAccent(c))
        return {};
    const QString decomposed = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_KD);
    QString result;
    for (const QChar letter : withoutAccents(decomposed).toCaseFolded()) {
        if (const QLatin1StringView letters = asciiLetters(letter); !letters.isEmpty())
            result += letters;
        else
            result += letter.unicode() == fractionSlash ? QChar(u'/') : letter;
    }
    return result.toStdString();
}

// The folded forms of all characters, a page of which is filled when it is needed first.
class FoldedCharacters
{
public:
    std::string_view operator[](char32_t c)
    {
        std::unique_ptr<Page> &page = m_pages[c / pageSize];
        if (!page)
            page = std::make_unique<Page>(c / pageSize * pageSize);
        const std::size_t i = c % pageSize;
        return std::string_view(page->text)
            .substr(page->starts[i], page->starts[i + 1] - page->starts[i]);
    }

private:
    static constexpr char32_t pageSize = 256;

    struct Page {
        explicit Page(char32_t first)
        {
            for (char32_t i = 0; i < pageSize; ++i) {
                text += foldedCharacter(first + i);
                starts[i + 1] = static_cast<quint16>(text.size());
            }
        }

        std::string text;
        std::array<quint16, pageSize + 1> starts{};
    };

    std::vector<std::unique_ptr<Page>> m_pages{(QChar::LastValidCodePoint + 1) / pageSize};
};

// Returns the character at this place and moves the place to the next one. Half a surrogate pair
// counts as the replacement character, as in UTF-8.
char32_t takeCharacter(QStringView text, qsizetype &at)
{
    const QChar first = text[at++];
    if (!first.isSurrogate())
        return first.unicode();
    if (first.isHighSurrogate() && at < text.size() && text[at].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[at++]);
    return QChar::ReplacementCharacter;
}

// Appends folded characters, of which those before `start` belong to other texts.
void append(std::string &result, std::size_t start, std::string_view character)
{
    const bool followsSpace = result.size() > start && result.back() == ' ';
    result += followsSpace && character.starts_with(' ') ? character.substr(1) : character;
}

// Calls `forEach` with the number of bytes in the result after each character.
template <typename ForEach>
void foldInto(std::string &result, QStringView text, ForEach forEach)
{
    static thread_local FoldedCharacters characters;
    const std::size_t start = result.size();
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype origin = at;
        append(result, start, characters[takeCharacter(text, at)]);
        forEach(origin);
    }
}

} // namespace

std::string folded(QStringView text)
{
    std::string result;
    result.reserve(static_cast<std::size_t>(text.size()));
    foldInto(result, text, [](qsizetype) {});
    return result;
}

void appendFolded(std::string &result, std::string_view utf8)
{
    const bool isAscii = std::all_of(utf8.begin(), utf8.end(),
                                     [](char c) { return static_cast<signed char>(c) >= 0; });
    if (!isAscii) {
        foldInto(result, QString::fromUtf8(utf8.data(), std::ssize(utf8)), [](qsizetype) {});
        return;
    }
    bool followsSpace = false;
    for (const char c : utf8) {
        const char letter = foldedAscii(c);
        if (letter != ' ' || !followsSpace)
            result += letter;
        followsSpace = letter == ' ';
    }
}

FoldedText foldedWithOrigins(QStringView text)
{
    FoldedText result;
    foldInto(result.text, text,
             [&result](qsizetype origin) { result.origins.resize(result.text.size(), origin); });
    return result;
}

QLatin1StringView asciiLetters(QChar letter)
{
    using namespace Qt::Literals::StringLiterals;
    switch (letter.unicode()) {
    case u'ß':
        return "ss"_L1;
    case u'æ':
        return "ae"_L1;
    case u'œ':
        return "oe"_L1;
    case u'ø':
        return "o"_L1;
    case u'ð':
    case u'đ':
        return "d"_L1;
    case u'ħ':
        return "h"_L1;
    case u'þ':
        return "th"_L1;
    case u'ł':
        return "l"_L1;
    case u'ı':
        return "i"_L1;
    default:
        return {};
    }
}
