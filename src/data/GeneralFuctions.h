#pragma once

#include <QString>

#include <string_view>

// Returns the text unchanged if it contains none of the twelve characters \ / : * ? " ' < > | ( ),
// and otherwise an empty text. Callers must check for an empty text before.
QString ContainsInvalidChars(const QString &text);

// The text without the spaces at its ends. Unlike QStringView::trimmed(), it keeps all other
// whitespace.
QStringView trimSpaces(QStringView text);
std::string_view trimSpaces(std::string_view text);
