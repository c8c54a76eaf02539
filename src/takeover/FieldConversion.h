#pragma once

#include "data/FieldValue.h"
#include "oldfiles/ValueDecoder.h"

#include <QString>

#include <optional>

// Returns what a field of this type stores for a value of the old file, which is null, or the same
// number or text; for yes and no 1 and 0. Returns nothing for a number that the field cannot hold:
// one that is not finite, and for a key or a whole number one that has decimals or too many bits.
std::optional<Cell> convertToField(FieldType type, const oldfiles::Value &value);

// Returns a number of the old file as it is shown to the user; empty for null.
QString displayNumber(const oldfiles::Value &value);

// Returns the key that the value is, if it is one of 32 bits.
std::optional<qint32> keyOf(const oldfiles::Value &value);
