#pragma once

#include <QStandardPaths>
#include <QTemporaryDir>

// A temporary home directory for a test that reads or writes the user's files; it is removed after
// the test. It keeps the test away from the real home even when the test is run by hand. It is in
// memory if possible, because many small writes to a disk are slow.
class TemporaryHome
{
public:
    TemporaryHome()
    {
        if (!folder.isValid())
            folder = QTemporaryDir();
        if (!folder.isValid())
            qFatal("no temporary folder");
        qputenv("HOME", folder.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", folder.filePath(QStringLiteral("config")).toUtf8());
        qputenv("XDG_DATA_HOME", folder.filePath(QStringLiteral("data")).toUtf8());
    }

    QString config(const QString &name) const
    {
        return folder.filePath(QStringLiteral("config/") + name);
    }
    QString data(const QString &name) const
    {
        return folder.filePath(QStringLiteral("data/") + name);
    }

private:
    QTemporaryDir folder{QStringLiteral("/dev/shm/pantrywise-XXXXXX")};
};
