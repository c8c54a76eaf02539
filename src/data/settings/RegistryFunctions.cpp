#include "data/settings/RegistryFunctions.h"

#include <QStringDecoder>
#include <QtEndian>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

// Query and set values, create and enumerate subkeys, notify, create links.
constexpr quint32 allAccess = 0x3F;

QString textOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? u"True"_s : u"False"_s;
    return value.toString();
}

// QString::fromUtf8() would drop a byte order mark at the beginning.
QString textOf(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8.decode(bytes);
}

} // namespace

void CreateRegistryKey(HKEY root, const QString &path)
{
    HKEY key = 0;
    if (RegCreateKeyExA(root, path, allAccess, key) == ERROR_SUCCESS)
        RegCloseKey(key);
}

void WriteRegistryValue(HKEY root, const QString &path, const QString &valueName,
                        const QVariant &value, quint32 valueType)
{
    HKEY key = 0;
    if (RegOpenKeyExA(root, path, allAccess, key) != ERROR_SUCCESS)
        return;
    StoreKeyValue(key, valueName, valueType, value);
    RegCloseKey(key);
}

QVariant ReadRegistryValue(HKEY root, const QString &path, const QString &valueName)
{
    QVariant value;
    HKEY key = 0;
    if (RegOpenKeyExA(root, path, allAccess, key) != ERROR_SUCCESS)
        return value;
    FetchKeyValue(key, valueName, value);
    RegCloseKey(key);
    return value;
}

qint32 StoreKeyValue(HKEY key, const QString &valueName, quint32 valueType, const QVariant &value)
{
    if (valueType == REG_SZ)
        return RegSetValueExA(key, valueName, valueType, textOf(value).toUtf8());
    if (valueType == REG_DWORD) {
        QByteArray bytes(sizeof(qint32), '\0');
        qToLittleEndian<qint32>(value.toInt(), bytes.data());
        return RegSetValueExA(key, valueName, valueType, bytes);
    }
    return ERROR_SUCCESS;
}

qint32 FetchKeyValue(HKEY key, const QString &valueName, QVariant &value)
{
    quint32 type = 0;
    qsizetype byteCount = 0;
    if (const qint32 status = RegQueryValueExA(key, valueName, type, byteCount);
        status != ERROR_SUCCESS)
        return status;
    if (type != REG_SZ && type != REG_DWORD)
        return -1;

    QByteArray buffer(type == REG_SZ ? byteCount : qsizetype(sizeof(qint32)), '\0');
    const qint32 status = RegQueryValueExA(key, valueName, type, byteCount, &buffer);
    if (type == REG_SZ)
        value = status == ERROR_SUCCESS ? QVariant(textOf(buffer)) : QVariant();
    else if (status == ERROR_SUCCESS)
        value = qFromLittleEndian<qint32>(buffer.constData());
    return status;
}
