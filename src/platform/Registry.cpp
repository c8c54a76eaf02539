#include "platform/Registry.h"

#include "platform/RegistryStore.h"

#include <QStringList>

#include <algorithm>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

struct OpenKey {
    QString path;
    quint32 access;
};

std::map<HKEY, OpenKey> &openKeys()
{
    static std::map<HKEY, OpenKey> keys;
    return keys;
}

// The whole path of a key below a root or an open key; empty when `parent` is neither.
QString pathBelow(HKEY parent, const QString &path)
{
    QString result;
    if (parent == HKEY_CLASSES_ROOT)
        result = u"HKEY_CLASSES_ROOT"_s;
    else if (parent == HKEY_CURRENT_USER)
        result = u"HKEY_CURRENT_USER"_s;
    else if (const auto found = openKeys().find(parent); found != openKeys().end())
        result = found->second.path;
    else
        return {};
    for (const QString &part : path.split(u'\\', Qt::SkipEmptyParts))
        result += u'/' + storedPart(part);
    return result;
}

// The lowest free number, so that a key that somebody forgot to close shows.
HKEY open(const QString &path, quint32 access)
{
    HKEY key = 1;
    while (openKeys().contains(key))
        ++key;
    openKeys().emplace(key, OpenKey{path, access});
    return key;
}

// ERROR_SUCCESS and the key's whole path, if it is open for such access.
qint32 findOpenKey(HKEY key, quint32 access, QString &path)
{
    const auto found = openKeys().find(key);
    if (found == openKeys().end())
        return ERROR_INVALID_HANDLE;
    if ((found->second.access & access) == 0)
        return ERROR_ACCESS_DENIED;
    path = found->second.path;
    return ERROR_SUCCESS;
}

} // namespace

qint32 RegCreateKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    if (!createRegistryKey(key))
        return ERROR_ACCESS_DENIED;
    opened = open(key, access);
    return ERROR_SUCCESS;
}

qint32 RegOpenKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    if (!registryKeyExists(key))
        return ERROR_FILE_NOT_FOUND;
    opened = open(key, access);
    return ERROR_SUCCESS;
}

qint32 RegCloseKey(HKEY key)
{
    return openKeys().erase(key) == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

qint32 RegQueryValueExA(HKEY key, const QString &valueName, quint32 &type, qsizetype &byteCount,
                        QByteArray *buffer)
{
    QString path;
    if (const qint32 status = findOpenKey(key, KEY_QUERY_VALUE, path); status != ERROR_SUCCESS)
        return status;
    const auto value = registryValue(path, valueName);
    if (!value)
        return ERROR_FILE_NOT_FOUND;
    type = value->type;
    byteCount = value->bytes.size();
    if (buffer == nullptr)
        return ERROR_SUCCESS;
    if (buffer->size() < byteCount)
        return ERROR_MORE_DATA;
    std::copy(value->bytes.begin(), value->bytes.end(), buffer->begin());
    return ERROR_SUCCESS;
}

qint32 RegSetValueExA(HKEY key, const QString &valueName, quint32 type, const QByteArray &bytes)
{
    QString path;
    if (const qint32 status = findOpenKey(key, KEY_SET_VALUE, path); status != ERROR_SUCCESS)
        return status;
    return setRegistryValue(path, valueName, {type, bytes}) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

} // namespace platform
