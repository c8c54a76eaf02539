#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTest>

// What stands in a file; nothing where there is none.
inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Makes the file anew, and its folder where there is none.
inline void setBytes(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}
