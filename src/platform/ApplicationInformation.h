#pragma once

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

QString productName();
VersionNumber programVersion();

} // namespace platform
