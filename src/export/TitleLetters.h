#pragma once

#include <QString>

// Texts as they are sorted and put under letters, and as pages are named after them.

// Returns the text in lower case without accents: "Crème Brûlée" is "creme brulee". Letters that
// have no accent by Unicode's account are replaced as well: ł is l, æ is ae.
QString baseLetters(const QString &text);

// Returns the text without the quotation marks, brackets and invisible characters that it begins
// with, or with all of them if it consists of nothing else.
QStringView withoutLeadingMarks(QStringView text);

// The letter, in upper case, under which a list shows a text; 0 if it begins with no letter.
char32_t titleLetter(const QString &text);

bool isChinese(char32_t letter);
