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

// The executable's base name, without directory and extension.
QString programFileName();

QString productName();
VersionNumber programVersion();

} // namespace platform
