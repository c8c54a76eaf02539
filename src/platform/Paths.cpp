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

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

QString displayPath(const std::filesystem::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

StartingPlace startingPlace(const QString &programDirectory, const QString &folder, PathStyle style)
{
    const QString beside = joinPath(programDirectory, folder, style);
    if (style == PathStyle::Unix)
        return {{}, beside};
    if (programDirectory.startsWith("\\\\"_L1))
        return {u"c:"_s, u"c:\\"_s};
    return {programDirectory.left(2), beside};
}

} // namespace platform
