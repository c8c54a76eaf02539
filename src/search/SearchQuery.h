#pragma once

#include <QList>
#include <QStringView>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// A word or a quoted text of a query. The texts to search must be folded (see Folding.h).
struct SearchWord {
    std::string text; // folded, not empty
    bool isExcluded = false; // must not be found
    bool startsWord = false; // is found only at the start of a word
    bool endsWord = false; // is found only at the end of a word

    // Returns where the word is found first, at or after the byte `from`, or npos.
    std::size_t find(std::string_view foldedText, std::size_t from = 0) const;
    bool isIn(std::string_view foldedText) const { return find(foldedText) != foldedText.npos; }
};

// What somebody types in order to find something, divided into words at blanks. Case and accents
// make no difference. A word is found anywhere in a text, also inside a longer word. A text in
// quotation marks is found only as whole words; until the closing mark is typed, its last word can
// be longer. A word or a quoted text after a minus must not be found. A minus or a quotation mark
// alone is no word.
class SearchQuery
{
public:
    // Letters of a text, counted in UTF-16 code units.
    struct Range {
        qsizetype start;
        qsizetype length;
    };

    SearchQuery() = default; // has no words
    explicit SearchQuery(QStringView typed);

    // Without words, every text matches.
    bool isEmpty() const { return m_words.empty(); }
    const std::vector<SearchWord> &words() const { return m_words; }

    // Whether all words that must be found are in this text, and none that must not.
    bool matches(QStringView text) const;

    // Returns the letters of the text in which words are found, in ascending order and apart from
    // each other. A letter includes its accents, and is whole even if the word is only a part of
    // it, such as s of ß. Returns the same letters if the text as a whole does not match, since
    // other words may be found in other texts.
    QList<Range> found(QStringView text) const;

private:
    std::vector<SearchWord> m_words;
};
