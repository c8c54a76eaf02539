#include "ApplicationInformation.h"

#include "Version.h"

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
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
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
