#pragma once

#include <QString>

// Returns a text from outside the program as one line that is safe to show: control characters are
// replaced by their Unicode control pictures, and other invisible characters, line separators and
// marks of writing direction by their code points ("<U+202E>").
QString escapeControlCharacters(const QString &text);

// Returns a title, name or line from outside the program for the text of a message box: escaped by
// escapeControlCharacters(), and ending in "..." if it has more than `longest` UTF-16 code units.
// The default length is about three lines of a box.
QString excerpt(const QString &text, qsizetype longest = 200);
