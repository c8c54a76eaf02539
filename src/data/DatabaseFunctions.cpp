#include "data/DatabaseFunctions.h"

QVariant ValueOrDefault(const QVariant &value, const QVariant &defaultValue)
{
    if (!value.isValid())
        return defaultValue;
    const bool isEmptyText = value.typeId() == QMetaType::QString && value.toString().isEmpty();
    return isEmptyText && defaultValue.isValid() ? defaultValue : value;
}
