#include "takeover/NewFile.h"

#include "platform/DiskSync.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"

#include <QCoreApplication>
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
            Text::tr("The new recipe file could not be written: %1. Your old file is unchanged.")
                .arg(file.errorString()));
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
            Text::tr("The new recipe file could not be written: %1. Your old file is unchanged.")
                .arg(QString::fromStdString(failure.message())));
    m_isKept = true;
}
