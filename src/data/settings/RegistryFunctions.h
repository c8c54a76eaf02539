#pragma once

#include "platform/Registry.h"

#include <QVariant>

// Settings and the file type in the registry. No routine reports a failure to the user; a missing
// value is no value, an invalid variant. An empty value name is the key's default value.

// Makes the key, or leaves it when it exists.
void CreateRegistryKey(platform::HKEY root, const QString &path);

// Stores the value in an existing key; where there is no such key, nothing happens.
void WriteRegistryValue(platform::HKEY root, const QString &path, const QString &valueName,
                        const QVariant &value, quint32 valueType);

// A text, a 32-bit number, or no value.
QVariant ReadRegistryValue(platform::HKEY root, const QString &path, const QString &valueName);

// The halves of the two above that work on an open key. They return the platform's status: 0 is
// success. A value of another type than REG_SZ and REG_DWORD is not stored, status 0, and not
// fetched, status -1. A yes/no value has the text form True or False.
qint32 StoreKeyValue(platform::HKEY key, const QString &valueName, quint32 valueType,
                     const QVariant &value);
qint32 FetchKeyValue(platform::HKEY key, const QString &valueName, QVariant &value);
