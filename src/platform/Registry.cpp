#include "Registry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

// --- Values as the file holds them

struct Value {
    quint32 type;
    QByteArray bytes;
    bool operator==(const Value &) const = default;
};

Value fromStored(const QString &stored)
{
    bool isNumber = false;
    const qint32 number =
        stored.startsWith("dword:"_L1) ? QStringView(stored).mid(6).toInt(&isNumber) : 0;
    if (isNumber) {
        QByteArray bytes(sizeof number, '\0');
        qToLittleEndian(number, bytes.data());
        return {REG_DWORD, bytes};
    }
    static const QRegularExpression hex(u"\\Ahex\\(([0-9]{1,9})\\):((?:[0-9a-f]{2})*)\\z"_s);
    if (const auto match = hex.match(stored); match.hasMatch())
        return {match.captured(1).toUInt(), QByteArray::fromHex(match.captured(2).toLatin1())};
    return {REG_SZ, stored.startsWith("text:"_L1) ? stored.mid(5).toUtf8() : stored.toUtf8()};
}

QString toStored(const Value &value)
{
    // A byte order mark inside a text does not survive the settings' reader, so it goes as bytes.
    const QString text = QString::fromUtf8(value.bytes);
    if (value.type == REG_SZ && text.toUtf8() == value.bytes && !text.contains(u'\ufeff'))
        return fromStored(text) == value ? text : "text:"_L1 + text;
    if (value.type == REG_DWORD && value.bytes.size() == sizeof(qint32))
        return "dword:"_L1 + QString::number(qFromLittleEndian<qint32>(value.bytes.constData()));
    return "hex(%1):%2"_L1.arg(QString::number(value.type),
                               QString::fromLatin1(value.bytes.toHex()));
}

// --- Names as the file holds them

// One part of a path. The settings take both slashes for separators; a leading underscore is ours.
QString stored(QString name)
{
    name.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
    return name.startsWith(u'_') ? u'_' + name : name;
}

QString entryOf(const QString &key, const QString &valueName)
{
    return key + u'/' + (valueName.isEmpty() ? u"_default"_s : stored(valueName));
}

QString markOf(const QString &key)
{
    return key + "/_key"_L1;
}

// --- The file

constexpr std::chrono::seconds longestWait(5);

QString storePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
}

// Held by the one program that changes the store.
class WriteLock
{
public:
    explicit WriteLock(const QString &path)
        : file(path + ".writing"_L1)
    {
        QDir().mkpath(QFileInfo(path).path());
        held = file.tryLock(int(std::chrono::milliseconds(longestWait).count()));
    }
    explicit operator bool() const { return held; }

private:
    QLockFile file;
    bool held;
};

bool isReadable(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return true;
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(bytes);
    if (utf8.hasError() || text.contains(QChar::Null))
        return false;
    QSettings settings(path, QSettings::IniFormat);
    settings.allKeys(); // a section is parsed no sooner than it is asked for
    return settings.status() == QSettings::NoError;
}

void keepAside(const QString &path)
{
    QString aside = path + ".damaged"_L1;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = path + ".damaged-"_L1 + QString::number(n);
    QFile::rename(path, aside);
}

// True when the store can be read or there is none, perhaps because it had to be set aside.
bool isStoreSound(const QString &path)
{
    if (isReadable(path))
        return true;
    const WriteLock lock(path);
    if (lock && !isReadable(path))
        keepAside(path);
    return lock && isReadable(path);
}

bool keyExists(const QString &key)
{
    const QString path = storePath();
    if (!isStoreSound(path))
        return false;
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(key);
    return !settings.allKeys().isEmpty();
}

// Null when there is no such value.
QString storedValue(const QString &entry)
{
    const QString path = storePath();
    if (!isStoreSound(path))
        return {};
    // A person may have left out the quotes around a text with a comma, which makes it a list.
    const QVariant value = QSettings(path, QSettings::IniFormat).value(entry);
    if (!value.isValid())
        return {};
    const QString text = value.typeId() == QMetaType::QStringList
        ? value.toStringList().join(", "_L1)
        : value.toString();
    return text.isNull() ? u""_s : text;
}

// Settings know another program's work by the file's size and its time in milliseconds, which two
// quick changes of equal length can share. So each change gets a later time than the one before.
qint32 store(const QString &key, const QString &entry, const QString &value)
{
    const QString path = storePath();
    if (!isStoreSound(path))
        return ERROR_ACCESS_DENIED;
    const WriteLock lock(path);
    if (!lock)
        return ERROR_ACCESS_DENIED;

    std::error_code ignored;
    const std::filesystem::path file = QFileInfo(path).filesystemFilePath();
    const auto before = std::filesystem::last_write_time(file, ignored);
    const bool existed = !ignored;

    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(entry, value);
    if (entry != markOf(key))
        settings.remove(markOf(key));
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return ERROR_ACCESS_DENIED;

    const auto after = std::filesystem::last_write_time(file, ignored);
    const auto later = before + std::chrono::milliseconds(1);
    if (existed && !ignored && after < later)
        std::filesystem::last_write_time(file, later, ignored);
    return ERROR_SUCCESS;
}

// --- Open keys

struct OpenKey {
    QString path; // parts as the file holds them, separated by slashes
    quint32 access;
};

std::map<HKEY, OpenKey> &openKeys()
{
    static std::map<HKEY, OpenKey> keys;
    return keys;
}

// The path of the key below a root or an open key; empty when `parent` is neither.
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
        result += u'/' + stored(part);
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

// ERROR_SUCCESS and the entry of a value in an open key, if the key was opened for this.
qint32 findEntry(HKEY key, const QString &valueName, quint32 access, QString &entry)
{
    const auto found = openKeys().find(key);
    if (found == openKeys().end())
        return ERROR_INVALID_HANDLE;
    if ((found->second.access & access) == 0)
        return ERROR_ACCESS_DENIED;
    entry = entryOf(found->second.path, valueName);
    return ERROR_SUCCESS;
}

} // namespace

qint32 RegCreateKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    if (!keyExists(key)) {
        if (const qint32 status = store(key, markOf(key), u""_s); status != ERROR_SUCCESS)
            return status;
    }
    opened = open(key, access);
    return ERROR_SUCCESS;
}

qint32 RegOpenKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    if (!keyExists(key))
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
    QString entry;
    if (const qint32 status = findEntry(key, valueName, KEY_QUERY_VALUE, entry);
        status != ERROR_SUCCESS)
        return status;
    const QString text = storedValue(entry);
    if (text.isNull())
        return ERROR_FILE_NOT_FOUND;
    const Value value = fromStored(text);
    type = value.type;
    byteCount = value.bytes.size();
    if (buffer == nullptr)
        return ERROR_SUCCESS;
    if (buffer->size() < byteCount)
        return ERROR_MORE_DATA;
    std::copy(value.bytes.begin(), value.bytes.end(), buffer->begin());
    return ERROR_SUCCESS;
}

qint32 RegSetValueExA(HKEY key, const QString &valueName, quint32 type, const QByteArray &bytes)
{
    QString entry;
    if (const qint32 status = findEntry(key, valueName, KEY_SET_VALUE, entry);
        status != ERROR_SUCCESS)
        return status;
    const QString value = toStored({type, bytes});
    if (const QString present = storedValue(entry); !present.isNull() && present == value)
        return ERROR_SUCCESS;
    return store(openKeys().at(key).path, entry, value);
}

} // namespace platform
