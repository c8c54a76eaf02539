#include "platform/ApplicationInformation.h"

#include "Version.h"
#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace platform {

QString programDirectory()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}

QString programFileName()
{
    const QFileInfo program(QCoreApplication::applicationFilePath());
    return nativePathStyle == PathStyle::Windows ? program.completeBaseName() : program.fileName();
}

QString productName()
{
    return QString::fromLatin1(::productName);
}

VersionNumber programVersion()
{
    return {versionMajor, versionMinor, versionRevision};
}

} // namespace platform
