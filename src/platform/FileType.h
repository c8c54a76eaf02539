#pragma once

#include "platform/Paths.h"

#include <vector>

// What the registry says of recipe files.
namespace platform {

struct FileTypeEntry {
    QString key; // below HKEY_CLASSES_ROOT
    QString defaultValue;
};

// From the extension to the type, its description, its icon, its verb and the verb's command line,
// in the order in which they are written.
std::vector<FileTypeEntry> fileTypeEntries(const QString &programDirectory,
                                           const QString &programFileName,
                                           PathStyle style = nativePathStyle);

} // namespace platform
