#include "data/settings/FileTypeRegistration.h"

#include "data/settings/RegistryFunctions.h"
#include "platform/ApplicationInformation.h"
#include "platform/DesktopRegistration.h"
#include "platform/FileType.h"

void registerFileType()
{
    using namespace platform;
    const QString directory = programDirectory();
    const QString name = programFileName();
    for (const FileTypeEntry &entry : fileTypeEntries(directory, name)) {
        CreateRegistryKey(HKEY_CLASSES_ROOT, entry.key);
        WriteRegistryValue(HKEY_CLASSES_ROOT, entry.key, QString(), entry.defaultValue, REG_SZ);
    }
    registerWithDesktop(programPath(directory, name));
}
