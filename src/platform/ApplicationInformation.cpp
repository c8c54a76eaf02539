#include "platform/ApplicationInformation.h"

#include "Version.h"
#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <filesystem>

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

QByteArray programPathBytes()
{
    std::error_code failure; // then there is no /proc, and the path is empty
    return QByteArray::fromStdString(
        std::filesystem::read_symlink("/proc/self/exe", failure).native());
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
