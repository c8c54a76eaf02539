#include "FileTypeRegistration.h"

#include "ApplicationInformation.h"
#include "DesktopRegistration.h"
#include "FileType.h"
#include "RegistryFunctions.h"

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
