#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The file behind the registry's operations. A key is named by its whole path, root included, as
// storedPart() makes its parts, with slashes between them.
namespace platform {

struct RegistryValue {
    quint32 type;
    QByteArray bytes;
    bool operator==(const RegistryValue &) const = default;
};

// One part of a path as the file holds it.
QString storedPart(QString part);

bool registryKeyExists(const QString &key);
std::optional<RegistryValue> registryValue(const QString &key, const QString &valueName);

// False when the store cannot be written.
bool createRegistryKey(const QString &key);
bool setRegistryValue(const QString &key, const QString &valueName, const RegistryValue &value);

} // namespace platform
