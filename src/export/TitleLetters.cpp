#include "export/TitleLetters.h"

#include "data/TextComparison.h"
#include "search/Folding.h"

#include <QList>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

bool isPassedOver(QChar character)
{
    switch (character.category()) {
    case QChar::Punctuation_Open:
    case QChar::Punctuation_Close:
    case QChar::Punctuation_InitialQuote:
    case QChar::Punctuation_FinalQuote:
    case QChar::Other_Format:
    case QChar::Separator_Space:
        return true;
    default:
        return u"\"'`´¡¿"_s.contains(character);
    }
}

std::string sortKey(std::string_view title)
{
    const QString text = QString::fromUtf8(title.data(), std::ssize(title));
    return baseLetters(withoutLeadingMarks(text).toString()).toStdString();
}

// All Chinese characters come last, although they are in several ranges.
char32_t letterRank(char32_t letter)
{
    constexpr char32_t last = QChar::LastValidCodePoint;
    return isChinese(letter) ? letter + last : letter;
}

} // namespace

QString baseLetters(const QString &text)
{
    if (isAscii(text))
        return text.toLower();
    QString base;
    base.reserve(text.size());
    const QString decomposed = text.normalized(QString::NormalizationForm_KD).toLower();
    for (const QChar character : decomposed) {
        if (const QLatin1StringView letters = asciiLetters(character); !letters.isEmpty())
            base += letters;
        else if (!character.isMark())
            base += character;
    }
    return base;
}

QStringView withoutLeadingMarks(QStringView text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isPassedOver);
    return first == text.end() ? text : text.sliced(first - text.begin());
}

char32_t titleLetter(const QString &text)
{
    // Longer than any character and its accents; normalizing all of a long title would be slow.
    constexpr qsizetype enough = 16;
    const QString base = baseLetters(withoutLeadingMarks(text).left(enough).toString());
    const QList<uint> characters = base.first(std::min<qsizetype>(base.size(), 2)).toUcs4();
    if (characters.isEmpty() || !QChar::isLetter(characters.front()))
        return 0;
    return QChar::toUpper(characters.front());
}

bool isChinese(char32_t letter)
{
    return QChar::script(letter) == QChar::Script_Han;
}

std::vector<std::uint32_t> sortedOrder(const std::vector<LetteredText> &texts)
{
    struct Key {
        char32_t rank;
        std::string text;
    };
    std::vector<Key> keys;
    keys.reserve(texts.size());
    for (const LetteredText &text : texts)
        keys.push_back({letterRank(text.letter), sortKey(text.text)});
    std::vector<std::uint32_t> order(texts.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        if (keys[a].rank != keys[b].rank)
            return keys[a].rank < keys[b].rank;
        const int comparison = compareTexts(keys[a].text, keys[b].text);
        return comparison != 0 ? comparison < 0 : compareTexts(texts[a].text, texts[b].text) < 0;
    });
    return order;
}
