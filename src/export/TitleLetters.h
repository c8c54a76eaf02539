#pragma once

#include <QString>

#include <cstdint>
#include <string_view>
#include <vector>

// Texts as they are sorted and put under letters, and as pages are named after them.

// Returns the text in lower case without accents: "Crème Brûlée" is "creme brulee". Letters that
// Unicode does not decompose into a letter and an accent are replaced as well: ł is l, æ is ae.
QString baseLetters(const QString &text);

// Returns the text without the quotation marks, brackets and invisible characters that it begins
// with, or with all of them if it consists of nothing else.
QStringView withoutLeadingMarks(QStringView text);

// The letter, in upper case, under which a list shows a text; 0 if it begins with no letter.
char32_t titleLetter(const QString &text);

bool isChinese(char32_t letter);

// Returns the order of texts under these letters: by letter, those without one first and those with
// a Chinese one last; then by text, in which accents count only between texts that are equal
// without them.
struct LetteredText {
    std::string_view text; // UTF-8
    char32_t letter; // titleLetter()
};
std::vector<std::uint32_t> sortedOrder(const std::vector<LetteredText> &texts);
