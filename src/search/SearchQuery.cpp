#include "search/SearchQuery.h"

#include "search/Folding.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace {

bool isQuotationMark(QChar c)
{
    return QStringView(u"\"“”„‟«»＂").contains(c);
}

bool isMinus(QChar c)
{
    return QStringView(u"-−－").contains(c);
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// Returns the first character of a text that is not empty.
char32_t firstCharacter(std::string_view utf8)
{
    if (static_cast<unsigned char>(utf8.front()) < 0x80)
        return static_cast<unsigned char>(utf8.front());
    const auto end = std::find_if_not(utf8.begin() + 1, utf8.end(), isContinuation);
    return QString::fromUtf8(utf8.data(), end - utf8.begin()).toUcs4().constFirst();
}

char32_t lastCharacter(std::string_view utf8)
{
    std::size_t start = utf8.size() - 1;
    while (start > 0 && isContinuation(utf8[start]))
        --start;
    return firstCharacter(utf8.substr(start));
}

bool isOfWord(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

// Whether no blanks tell where words of this script begin and end.
bool isWrittenWithoutBlanks(char32_t c)
{
    switch (QChar::script(c)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
    case QChar::Script_Tibetan:
        return true;
    default:
        return false;
    }
}

// Whether one word can end and another one begin at this byte of a folded text.
bool isWordBoundary(std::string_view text, std::size_t at)
{
    if (at == 0 || at == text.size())
        return true;
    const char32_t before = lastCharacter(text.substr(0, at));
    const char32_t after = firstCharacter(text.substr(at));
    if (QChar::isMark(after))
        return false;
    return !isOfWord(before) || !isOfWord(after) || isWrittenWithoutBlanks(before)
        || isWrittenWithoutBlanks(after);
}

std::string withoutBlanksAtEnds(std::string text)
{
    if (text.ends_with(' '))
        text.pop_back();
    if (text.starts_with(' '))
        text.erase(0, 1);
    return text;
}

// Removes the next word from what was typed, which must not begin with a blank. Its text may be
// empty.
SearchWord takeWord(QStringView &typed)
{
    SearchWord word;
    if (isMinus(typed.front())) {
        word.isExcluded = true;
        typed = typed.sliced(1);
    }
    word.startsWord = !typed.isEmpty() && isQuotationMark(typed.front());
    if (word.startsWord)
        typed = typed.sliced(1);
    const auto end = word.startsWord
        ? std::find_if(typed.begin(), typed.end(), isQuotationMark)
        : std::find_if(typed.begin(), typed.end(), [](QChar c) { return c.isSpace(); });
    const QStringView text = typed.first(end - typed.begin());
    const bool isClosed = word.startsWord && end != typed.end();
    typed = typed.sliced(text.size() + (isClosed ? 1 : 0));
    std::string foldedText = folded(text);
    word.endsWord = word.startsWord && (isClosed || foldedText.ends_with(' '));
    word.text = withoutBlanksAtEnds(std::move(foldedText));
    return word;
}

// The letters from which these bytes of the folded text were made, up to the next letter that is
// not dropped.
SearchQuery::Range lettersOf(const FoldedText &text, qsizetype size, std::size_t start,
                             std::size_t end)
{
    while (end < text.origins.size() && text.origins[end] == text.origins[end - 1])
        ++end;
    const qsizetype first = text.origins[start];
    return {first, (end < text.origins.size() ? text.origins[end] : size) - first};
}

QList<SearchQuery::Range> merged(QList<SearchQuery::Range> ranges)
{
    std::sort(ranges.begin(), ranges.end(),
              [](const auto &a, const auto &b) { return a.start < b.start; });
    QList<SearchQuery::Range> result;
    for (const SearchQuery::Range &range : std::as_const(ranges)) {
        if (result.isEmpty() || range.start > result.back().start + result.back().length) {
            result.append(range);
            continue;
        }
        SearchQuery::Range &last = result.back();
        last.length = std::max(last.length, range.start + range.length - last.start);
    }
    return result;
}

} // namespace

std::size_t SearchWord::find(std::string_view foldedText, std::size_t from) const
{
    std::size_t at = foldedText.find(text, from);
    while (at != std::string_view::npos
           && ((startsWord && !isWordBoundary(foldedText, at))
               || (endsWord && !isWordBoundary(foldedText, at + text.size()))))
        at = foldedText.find(text, at + 1);
    return at;
}

SearchQuery::SearchQuery(QStringView typed)
{
    while (!typed.isEmpty()) {
        if (typed.front().isSpace()) {
            typed = typed.sliced(1);
            continue;
        }
        SearchWord word = takeWord(typed);
        if (!word.text.empty())
            m_words.push_back(std::move(word));
    }
}

bool SearchQuery::matches(QStringView text) const
{
    if (isEmpty())
        return true;
    const std::string foldedText = folded(text);
    return std::all_of(m_words.begin(), m_words.end(), [&](const SearchWord &word) {
        return word.isIn(foldedText) != word.isExcluded;
    });
}

QList<SearchQuery::Range> SearchQuery::found(QStringView text) const
{
    const FoldedText foldedText = foldedWithOrigins(text);
    QList<Range> ranges;
    for (const SearchWord &word : m_words) {
        if (word.isExcluded)
            continue;
        std::size_t at = word.find(foldedText.text);
        while (at != std::string::npos) {
            const std::size_t end = at + word.text.size();
            ranges.append(lettersOf(foldedText, text.size(), at, end));
            at = word.find(foldedText.text, end);
        }
    }
    return merged(std::move(ranges));
}
