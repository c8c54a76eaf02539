#pragma once

#include <QString>

// The text itself if it has none of the twelve characters \ / : * ? " ' < > | ( ), else empty text.
// Callers check for empty text first.
QString ContainsInvalidChars(const QString &text);

// The text without the spaces at its ends. Unlike QStringView::trimmed(), it keeps all other
// whitespace.
QStringView trimSpaces(QStringView text);
