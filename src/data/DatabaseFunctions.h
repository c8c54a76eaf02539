#pragma once

#include <QVariant>

// Reads a value that may be null, which is an invalid variant. Returns `defaultValue` for null and,
// if it is valid, for empty text; returns any other value unchanged.
QVariant ValueOrDefault(const QVariant &value, const QVariant &defaultValue = {});
