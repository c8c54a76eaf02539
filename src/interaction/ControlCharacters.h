#pragma once

#include <QString>

// A text from outside in one line for people to read: characters that would show as nothing, break
// the line or turn its direction stand as pictures or numbers.
QString escapeControlCharacters(const QString &text);
