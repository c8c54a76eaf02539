#pragma once

#include <QVariant>

// The routine through which values that may be null are read: `defaultValue` for a null, which is
// an invalid variant, and for the empty text; any other value as it is. Without a default a null
// gives no value and the empty text itself.
QVariant ValueOrDefault(const QVariant &value, const QVariant &defaultValue = {});
