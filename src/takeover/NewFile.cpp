#include "takeover/NewFile.h"

#include "platform/DiskSync.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(NewFile)
};

} // namespace

NewFile::NewFile(const QString &path)
    : m_path(path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw platform::UserVisibleError(
            Text::tr("The file %1 could not be made: %2. Nothing was taken over.")
                .arg(QDir::toNativeSeparators(path), file.errorString()));
}

NewFile::~NewFile()
{
    if (!m_isKept)
        QFile::remove(m_path);
}

void NewFile::keep()
{
    const std::filesystem::path file = platform::nativePath(m_path);
    std::error_code failure = platform::syncToDisk(file);
    if (!failure)
        failure = platform::syncToDisk(std::filesystem::absolute(file).parent_path());
    if (failure)
        throw platform::UserVisibleError(
            Text::tr("The file %1 could not be written: %2. Nothing was taken over.")
                .arg(QDir::toNativeSeparators(m_path), QString::fromStdString(failure.message())));
    m_isKept = true;
}
