#include "RegistryStore.h"

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

#include <chrono>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

constexpr int longestWait = 5000; // milliseconds, for another program's change

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
        held = file.tryLock(longestWait);
    }
    explicit operator bool() const { return held; }

private:
    QLockFile file;
    bool held = false;
};

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
    if (utf8.hasError() || text.contains(QChar::Null))
        return false;
    const QSettings settings(path, QSettings::IniFormat);
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
bool isSound(const QString &path)
{
    if (isReadable(path))
        return true;
    const WriteLock lock(path);
    if (lock && !isReadable(path))
        keepAside(path);
    return lock && isReadable(path);
}

// Null when there is no such entry.
QString textAt(const QString &entry)
{
    const QString path = storePath();
    const QVariant value =
        isSound(path) ? QSettings(path, QSettings::IniFormat).value(entry) : QVariant();
    if (!value.isValid())
        return {};
    // A person may have left out the quotes around a text with a comma, which makes it a list.
    const QString text = value.typeId() == QMetaType::QStringList
        ? value.toStringList().join(", "_L1)
        : value.toString();
    return text.isNull() ? u""_s : text;
}

// Settings know another program's work by the file's size and its time in milliseconds, which two
// quick changes of equal length can share. So each change gets a later time than the one before.
bool change(const QString &key, const QString &entry, const QString &text)
{
    const QString path = storePath();
    if (!isSound(path))
        return false;
    const WriteLock lock(path);
    if (!lock)
        return false;

    using std::filesystem::last_write_time;
    const std::filesystem::path file = QFileInfo(path).filesystemFilePath();
    std::error_code error;
    const auto before = last_write_time(file, error);
    const bool existed = !error;

    QSettings settings(path, QSettings::IniFormat);
    settings.remove(markOf(key));
    settings.setValue(entry, text);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return false;

    const auto earliest = before + std::chrono::milliseconds(1);
    if (existed && last_write_time(file, error) < earliest && !error)
        last_write_time(file, earliest, error);
    return true;
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
    const QString path = storePath();
    if (!isSound(path))
        return false;
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(key);
    return !settings.allKeys().isEmpty();
}

std::optional<RegistryValue> registryValue(const QString &key, const QString &valueName)
{
    const QString text = textAt(entryOf(key, valueName));
    return text.isNull() ? std::nullopt : std::optional(fromText(text));
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
