#pragma once

#include <QString>

// Returns a text from outside the program as one line that is safe to show: control characters are
// replaced by their Unicode control pictures, and other invisible characters, line separators and
// marks of writing direction by their code points ("<U+202E>").
QString escapeControlCharacters(const QString &text);
