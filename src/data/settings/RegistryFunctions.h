#pragma once

#include "platform/Registry.h"

#include <QVariant>

// The routines through which the program uses the registry. None of them reports a failure to the
// user. An empty value name means the default value of the key.

// Creates the key if it does not exist.
void CreateRegistryKey(platform::HKEY root, const QString &path);

// Stores the value. The key must exist; otherwise nothing is stored. A bool is stored as the text
// True or False.
void WriteRegistryValue(platform::HKEY root, const QString &path, const QString &valueName,
                        const QVariant &value, quint32 valueType);

// Returns a text or a 32-bit number, or an invalid variant if there is no such value.
QVariant ReadRegistryValue(platform::HKEY root, const QString &path, const QString &valueName);

// Store and fetch a value of an open key. They return the status of the platform, 0 for success. If
// the type is neither REG_SZ nor REG_DWORD, StoreKeyValue stores nothing and returns 0, and
// FetchKeyValue leaves `value` as it is and returns -1.
qint32 StoreKeyValue(platform::HKEY key, const QString &valueName, quint32 valueType,
                     const QVariant &value);
qint32 FetchKeyValue(platform::HKEY key, const QString &valueName, QVariant &value);
