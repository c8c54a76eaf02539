#include "data/settings/FileTypeRegistration.h"

#include "data/settings/RegistryFunctions.h"
#include "platform/ApplicationInformation.h"
#include "platform/DesktopRegistration.h"
#include "platform/Paths.h"

using namespace Qt::Literals::StringLiterals;

std::vector<FileTypeEntry> fileTypeEntries(const QString &programPath)
{
    return {
        {u".srf"_s, u"srffile"_s},
        {u"srffile"_s, u"Standard Recipe Format"_s},
        {u"srffile\\DefaultIcon"_s, programPath + ",0"_L1},
        {u"srffile\\Shell"_s, u"Import"_s},
        {u"srffile\\Shell\\Import\\command"_s, u'"' + programPath + "\" %1"_L1},
    };
}

void registerFileType()
{
    const QString program =
        platform::programPath(platform::programDirectory(), platform::programFileName());
    for (const FileTypeEntry &entry : fileTypeEntries(program)) {
        CreateRegistryKey(platform::HKEY_CLASSES_ROOT, entry.key);
        WriteRegistryValue(platform::HKEY_CLASSES_ROOT, entry.key, QString(), entry.defaultValue,
                           platform::REG_SZ);
    }
    platform::registerWithDesktop(program);
}
