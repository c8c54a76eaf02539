#pragma once

#include <QtGlobal>

#include <cstddef>
#include <string_view>

// The one definition of equality and order of texts, used by searches, indexes and the database's
// sorting. Case does not count (simple case folding, for all of Unicode), accents do. Texts are
// UTF-8. An invalid byte counts as a character, so that any bytes have an order. Nothing is
// normalised.

bool textsEqual(std::string_view a, std::string_view b);

// Returns a number less than, equal to or greater than 0. Accents decide only between texts with
// the same base letters, so that an accented letter sorts next to the plain one.
int compareTexts(std::string_view a, std::string_view b);

// Eight bytes of a sort key that consists of the text's base letters in UTF-8, from the byte `from`
// on, the first one being the most significant; zeros follow the end of the text. Where the keys of
// two texts first differ, they compare as the texts do. Texts with equal keys may differ.
quint64 textPrefix(std::string_view text, std::size_t from);

// Equal texts have equal hashes.
std::size_t textHash(std::string_view text);

// Whether the text matches a pattern, in which * matches any run of characters and ? matches one.
bool textMatches(std::string_view text, std::string_view pattern);
bool hasPatternCharacters(std::string_view pattern);
