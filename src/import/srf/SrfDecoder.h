#pragma once

#include <QByteArrayView>
#include <QString>

// The text of a recipe file: valid UTF-8 is taken as such, without a byte order mark at its start,
// anything else as a whole as Windows-1252, whose five unused bytes become the control characters
// of the same number.
QString decodeSrf(QByteArrayView bytes);
