#pragma once

#include <QLatin1StringView>
#include <QStringView>

#include <string>
#include <string_view>
#include <vector>

// Texts as they are searched, in UTF-8. Case, accents and compatibility forms make no difference:
// "Crème Brûlée" is "creme brulee", ß is ss, ı and İ are i, ς is σ, full-width letters are ASCII
// letters and ½ is 1/2. Vowel signs, voicing marks and the like, which make another letter, stay.
// All dashes are a minus and all apostrophes are the ASCII one. Each run of blanks and line ends is
// one space, so that no folded text contains a line end. Invisible characters are dropped.

std::string folded(QStringView text);

// Appends the folded text to `result`.
void appendFolded(std::string &result, std::string_view utf8);

// A folded text, and for each of its bytes where the letter begins from which it was made.
struct FoldedText {
    std::string text;
    std::vector<qsizetype> origins;
};
FoldedText foldedWithOrigins(QStringView text);

// Returns the replacement of a lower-case letter that normalization does not decompose into an
// ASCII letter and accents, or an empty text.
QLatin1StringView asciiLetters(QChar letter);
