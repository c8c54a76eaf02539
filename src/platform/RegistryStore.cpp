#include "platform/RegistryStore.h"

#include "platform/Registry.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QThread>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

// In milliseconds. A change takes a few; a program that was killed in one does not hold up others.
constexpr int longestChange = 2000;
constexpr int longestWait = 5000;

RegistryValue fromText(const QString &text)
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

QString toText(const RegistryValue &value)
{
    // A byte order mark inside a text does not survive the settings' reader, so it goes as bytes.
    const QString text = QString::fromUtf8(value.bytes);
    if (value.type == REG_SZ && text.toUtf8() == value.bytes && !text.contains(u'\ufeff'))
        return fromText(text) == value ? text : "text:"_L1 + text;
    if (value.type == REG_DWORD && value.bytes.size() == sizeof(qint32))
        return "dword:"_L1 + QString::number(qFromLittleEndian<qint32>(value.bytes.constData()));
    return "hex(%1):%2"_L1.arg(QString::number(value.type),
                               QString::fromLatin1(value.bytes.toHex()));
}

QString entryOf(const QString &key, const QString &valueName)
{
    return key + u'/' + (valueName.isEmpty() ? u"_default"_s : storedPart(valueName));
}

QString markOf(const QString &key)
{
    return key + "/_key"_L1;
}

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
        file.setStaleLockTime(longestChange);
        // Not the lock's own wait, which doubles its pauses and starves beside a busy program.
        const QDeadlineTimer limit(longestWait);
        while (!(held = file.tryLock()) && file.error() == QLockFile::LockFailedError
               && !limit.hasExpired())
            QThread::msleep(5);
        // Settings have a lock of their own. Nobody but the holder of this one can hold that, so it
        // is a killed program's, and they would wait for it half a minute.
        if (held)
            QFile::remove(path + ".lock"_L1);
    }
    explicit operator bool() const { return held; }

private:
    QLockFile file;
    bool held = false;
};

// Of every line: blank, a comment, a heading, or a name and its value. Not left to the settings,
// which complain about a file once and then go by what they remember of it.
bool isWellFormed(const QString &text)
{
    const QStringList lines = text.split(u'\n');
    return std::all_of(lines.begin(), lines.end(), [](const QString &whole) {
        const QStringView line = QStringView(whole).trimmed();
        return line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#')
            || (line.startsWith(u'[') ? line.endsWith(u']') : line.indexOf(u'=') > 0);
    });
}

bool isReadable(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return true;
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(file.readAll());
    return !utf8.hasError() && !text.contains(QChar::Null) && isWellFormed(text);
}

void keepAside(const QString &path)
{
    QString aside = path + ".damaged"_L1;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = path + ".damaged-"_L1 + QString::number(n);
    QFile::rename(path, aside);
}

// True when the store can be read or there is none, perhaps because it had to be set aside.
bool isSound(const QString &path)
{
    if (isReadable(path))
        return true;
    const WriteLock lock(path);
    if (lock && !isReadable(path))
        keepAside(path);
    return lock && isReadable(path);
}

// Settings remember a file by its size and its time in milliseconds, and look at these after they
// have read it. Two quick changes of equal length can share them, and a change in between is never
// seen. So the time of the file moves on with each change, and once more where it must be read
// anew.
using FileTime = std::filesystem::file_time_type;

std::filesystem::path fileOf(const QString &path)
{
    return QFileInfo(path).filesystemFilePath();
}

FileTime timeOf(const QString &path)
{
    std::error_code error;
    const FileTime time = std::filesystem::last_write_time(fileOf(path), error);
    return error ? FileTime::min() : time;
}

void makeLaterThan(FileTime time, const QString &path)
{
    const FileTime earliest = time + std::chrono::milliseconds(1);
    std::error_code ignored; // there may be no file yet
    if (timeOf(path) < earliest)
        std::filesystem::last_write_time(fileOf(path), earliest, ignored);
}

// The settings as the file holds them now, to read from; null when they cannot be read.
std::unique_ptr<const QSettings> openStore()
{
    const QString path = storePath();
    if (!isSound(path))
        return nullptr;
    const FileTime before = timeOf(path);
    auto settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
    if (timeOf(path) != before) {
        const WriteLock lock(path);
        makeLaterThan(timeOf(path), path);
        settings->sync();
    }
    return settings;
}

// Sets one entry below the key, which then needs no mark to exist.
bool change(const QString &key, const QString &entry, const QString &text)
{
    const QString path = storePath();
    if (!isSound(path))
        return false;
    const WriteLock lock(path);
    if (!lock)
        return false;
    const FileTime before = timeOf(path);

    QSettings settings(path, QSettings::IniFormat);
    settings.remove(markOf(key));
    settings.setValue(entry, text);
    settings.sync();
    makeLaterThan(before, path);
    return settings.status() != QSettings::AccessError; // its form has been looked at
}

} // namespace

// The settings take both slashes for separators; names with a leading underscore are the store's.
QString storedPart(QString part)
{
    part.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
    return part.startsWith(u'_') ? u'_' + part : part;
}

bool registryKeyExists(const QString &key)
{
    const auto settings = openStore();
    const QStringList entries = settings ? settings->allKeys() : QStringList();
    return std::any_of(entries.begin(), entries.end(), [prefix = key + u'/'](const QString &entry) {
        return entry.startsWith(prefix);
    });
}

std::optional<RegistryValue> registryValue(const QString &key, const QString &valueName)
{
    const auto settings = openStore();
    const QVariant value = settings ? settings->value(entryOf(key, valueName)) : QVariant();
    if (!value.isValid())
        return std::nullopt;
    // A person may have left out the quotes around a text with a comma, which makes it a list.
    const bool isList = value.typeId() == QMetaType::QStringList;
    return fromText(isList ? value.toStringList().join(", "_L1) : value.toString());
}

bool createRegistryKey(const QString &key)
{
    return registryKeyExists(key) || change(key, markOf(key), u""_s);
}

bool setRegistryValue(const QString &key, const QString &valueName, const RegistryValue &value)
{
    return registryValue(key, valueName) == value
        || change(key, entryOf(key, valueName), toText(value));
}

} // namespace platform
