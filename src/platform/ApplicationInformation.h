#pragma once

#include <QByteArray>
#include <QString>

// What the running program knows about itself. The two paths need a QCoreApplication.
namespace platform {

struct VersionNumber {
    int major;
    int minor;
    int revision;
};

// Returns the directory of the executable, without a trailing separator.
QString programDirectory();

// Returns the name of the executable without its directory and, on Windows, without ".exe".
QString programFileName();

// Returns the path of the executable as the system gives it, which need not be valid text.
QByteArray programPathBytes();

QString productName();
VersionNumber programVersion();

} // namespace platform
