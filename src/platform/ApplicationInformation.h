#pragma once

#include <QString>

// What the running program knows of itself. Needs a QCoreApplication for the two paths.
namespace platform {

struct VersionNumber {
    int major;
    int minor;
    int revision;
};

// Directory of the running executable, without a trailing separator.
QString programDirectory();

// The executable's name without its directory and, where the platform has it, the ".exe".
QString programFileName();

QString productName();
VersionNumber programVersion();

} // namespace platform
