#pragma once

#include <QStandardPaths>
#include <QTemporaryDir>

// A home of its own for a test that writes where the user's files are, or removes them: gone with
// the test, and the right one also when the test is run by hand. In memory where the system has
// such a place, since many small writes wait for a disk.
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
