#include "platform/Paths.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace platform {

QString joinPath(const QString &directory, const QString &name, PathStyle style)
{
    return directory + (style == PathStyle::Windows ? u'\\' : u'/') + name;
}

QString programPath(const QString &directory, const QString &baseName, PathStyle style)
{
    return joinPath(directory, baseName, style) + (style == PathStyle::Windows ? ".exe"_L1 : ""_L1);
}

QString startingDirectory(const QString &programDirectory, const QString &folder, PathStyle style)
{
    if (style == PathStyle::Windows && programDirectory.startsWith("\\\\"_L1))
        return u"c:\\"_s;
    return joinPath(programDirectory, folder, style);
}

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

QString displayPath(const std::filesystem::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

} // namespace platform
