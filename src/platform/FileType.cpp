#include "platform/FileType.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

std::vector<FileTypeEntry> fileTypeEntries(const QString &programDirectory,
                                           const QString &programFileName, PathStyle style)
{
    const QString program = programPath(programDirectory, programFileName, style);
    return {
        {u".srf"_s, u"srffile"_s},
        {u"srffile"_s, u"Standard Recipe Format"_s},
        {u"srffile\\DefaultIcon"_s, program + ",0"_L1},
        {u"srffile\\Shell"_s, u"Import"_s},
        {u"srffile\\Shell\\Import\\command"_s, u'"' + program + "\" %1"_L1},
    };
}

} // namespace platform
