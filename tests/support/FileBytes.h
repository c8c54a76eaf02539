#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTest>

// Returns the contents of a file; empty if there is none.
inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes a file, and creates its folder if necessary.
inline void setBytes(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}
