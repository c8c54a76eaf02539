#pragma once

#include <QString>

// The text itself when it holds none of the twelve characters \ / : * ? " ' < > | ( ),
// else the empty text. Callers test for an empty text first.
QString ContainsInvalidChars(const QString &text);
