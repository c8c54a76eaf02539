#include "platform/Registry.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <optional>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace platform {
namespace {

// The values of a key, as text in the file.

struct Value {
    quint32 type;
    QByteArray bytes;
    bool operator==(const Value &) const = default;
};

Value fromText(const QString &text)
{
    bool isNumber = false;
    const qint32 number =
        text.startsWith("dword:"_L1) ? QStringView(text).mid(6).toInt(&isNumber) : 0;
    if (isNumber) {
        QByteArray bytes(sizeof number, '\0');
        qToLittleEndian(number, bytes.data());
        return {REG_DWORD, bytes};
    }
    static const QRegularExpression hex(u"\\Ahex\\(([0-9]{1,9})\\):((?:[0-9a-f]{2})*)\\z"_s);
    if (const auto match = hex.match(text); match.hasMatch())
        return {match.captured(1).toUInt(), QByteArray::fromHex(match.captured(2).toLatin1())};
    return {REG_SZ, text.startsWith("text:"_L1) ? text.mid(5).toUtf8() : text.toUtf8()};
}

QString toText(const Value &value)
{
    // QSettings drops byte order marks when it reads a text, so that such a text is stored as
    // bytes.
    const QString text = QString::fromUtf8(value.bytes);
    if (value.type == REG_SZ && text.toUtf8() == value.bytes && !text.contains(u'\ufeff'))
        return fromText(text) == value ? text : "text:"_L1 + text;
    if (value.type == REG_DWORD && value.bytes.size() == sizeof(qint32))
        return "dword:"_L1 + QString::number(qFromLittleEndian<qint32>(value.bytes.constData()));
    return "hex(%1):%2"_L1.arg(QString::number(value.type),
                               QString::fromLatin1(value.bytes.toHex()));
}

// Both slashes separate groups in QSettings, and names that begin with an underscore are reserved.
QString encodedName(QString name)
{
    name.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
    return name.startsWith(u'_') ? u'_' + name : name;
}

QString settingName(const QString &key, const QString &valueName)
{
    return key + u'/' + (valueName.isEmpty() ? u"_default"_s : encodedName(valueName));
}

QString markName(const QString &key)
{
    return key + "/_key"_L1;
}

// The file. QSettings protects it from programs that write at the same time: before it writes, it
// takes a lock and reads what others have written, and it replaces the file in one step. QSettings
// takes a file of unchanged size and time for unchanged, so it can miss a change that another
// program makes within a few milliseconds of its own. Settings are changed by hand, and the entries
// written at the start are the same for all programs, so this does not happen in practice.
//
// A program that was killed can leave the lock file of QSettings. QSettings takes over a lock of a
// process that no longer runs on this computer. It would wait for up to 30 seconds for an empty one
// or one of another computer.

bool isDamaged(QSettings &settings)
{
    settings.allKeys(); // parses all groups, which sets the status
    if (settings.status() == QSettings::FormatError)
        return true;
    // QSettings would replace invalid UTF-8 without an error. It never writes a zero byte, but a
    // disk that lost power can leave some within a value.
    QFile file(settings.fileName());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    return !bytes.isValidUtf8() || bytes.contains('\0');
}

// Without this, the next write would destroy what QSettings could not read.
void keepAside(const QString &path)
{
    QString aside = path + ".damaged"_L1;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = path + ".damaged-"_L1 + QString::number(n);
    QFile::rename(path, aside);
}

std::unique_ptr<QSettings> openFile()
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
    auto settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
    if (isDamaged(*settings)) {
        keepAside(path);
        settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
    }
    return settings;
}

bool hasKey(QSettings &settings, const QString &key)
{
    settings.beginGroup(key);
    const bool found = !settings.allKeys().isEmpty();
    settings.endGroup();
    return found;
}

std::optional<Value> findValue(const QSettings &settings, const QString &name)
{
    const QVariant found = settings.value(name);
    if (!found.isValid())
        return std::nullopt;
    // QSettings reads a text with a comma as a list if a person has not put it in quotes.
    const bool isList = found.typeId() == QMetaType::QStringList;
    return fromText(isList ? found.toStringList().join(", "_L1) : found.toString());
}

// Writing takes milliseconds, so an older lock was left behind, unless a program holds it with
// flock() as well, which QLockFile notices.
void removeAbandonedLock(const QString &file)
{
    const QString path = file + ".lock"_L1;
    if (!QFileInfo::exists(path))
        return;
    QLockFile lock(path);
    lock.setStaleLockTime(2s);
    lock.tryLock(); // QLockFile then removes it
}

// Setting names and what they become: an invalid variant removes the setting.
using Changes = std::map<QString, QVariant>;

// Applies the changes, and returns what undoes them.
Changes apply(QSettings &settings, const Changes &changes)
{
    Changes before;
    for (const auto &[name, value] : changes) {
        before.emplace(name, settings.value(name));
        if (value.isValid())
            settings.setValue(name, value);
        else
            settings.remove(name);
    }
    return before;
}

qint32 save(QSettings &settings, const Changes &changes)
{
    const Changes before = apply(settings, changes);
    removeAbandonedLock(settings.fileName());
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return ERROR_SUCCESS;
    // QSettings keeps what it could not store, returns it and stores it with the next change.
    apply(settings, before);
    return ERROR_ACCESS_DENIED;
}

// The open keys.

struct OpenKey {
    QString key; // its path in QSettings, which begins with the root
    quint32 access;
};

std::map<HKEY, OpenKey> &openKeys()
{
    static std::map<HKEY, OpenKey> keys;
    return keys;
}

// The path in QSettings of a key below a root or an open key; empty if `parent` is neither.
QString pathBelow(HKEY parent, const QString &path)
{
    QString result;
    if (parent == HKEY_CLASSES_ROOT)
        result = u"HKEY_CLASSES_ROOT"_s;
    else if (parent == HKEY_CURRENT_USER)
        result = u"HKEY_CURRENT_USER"_s;
    else if (const auto found = openKeys().find(parent); found != openKeys().end())
        result = found->second.key;
    else
        return {};
    for (const QString &part : path.split(u'\\', Qt::SkipEmptyParts))
        result += u'/' + encodedName(part);
    return result;
}

// Takes the lowest free number, so that a test can tell whether all keys have been closed.
HKEY openKey(const QString &key, quint32 access)
{
    HKEY number = 1;
    while (openKeys().contains(number))
        ++number;
    openKeys().emplace(number, OpenKey{key, access});
    return number;
}

// Sets `key` to the path in QSettings of the open key with this number. Fails if that is not open
// for at least one of these kinds of access.
qint32 findOpenKey(HKEY number, quint32 access, QString &key)
{
    const auto found = openKeys().find(number);
    if (found == openKeys().end())
        return ERROR_INVALID_HANDLE;
    if ((found->second.access & access) == 0)
        return ERROR_ACCESS_DENIED;
    key = found->second.key;
    return ERROR_SUCCESS;
}

} // namespace

qint32 RegCreateKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    const auto settings = openFile();
    if (!hasKey(*settings, key)) {
        if (const qint32 status = save(*settings, {{markName(key), u""_s}});
            status != ERROR_SUCCESS)
            return status;
    }
    opened = openKey(key, access);
    return ERROR_SUCCESS;
}

qint32 RegOpenKeyExA(HKEY parent, const QString &path, quint32 access, HKEY &opened)
{
    const QString key = pathBelow(parent, path);
    if (key.isEmpty())
        return ERROR_INVALID_HANDLE;
    if (!hasKey(*openFile(), key))
        return ERROR_FILE_NOT_FOUND;
    opened = openKey(key, access);
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
    const auto value = findValue(*openFile(), settingName(path, valueName));
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
    const auto settings = openFile();
    const QString name = settingName(path, valueName);
    const Value value{type, bytes};
    if (findValue(*settings, name) == value)
        return ERROR_SUCCESS;
    return save(*settings, {{markName(path), {}}, {name, toText(value)}});
}

} // namespace platform
