#pragma once

#include <QVariant>

// A stored value as windows show it: a number in decimal digits, with a point and never with an
// exponent, so that its column takes the text again; no text for null.
QString displayText(const QVariant &stored);
