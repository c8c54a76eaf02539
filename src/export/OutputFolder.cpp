#include "export/OutputFolder.h"

#include "export/ExportError.h"
#include "export/ExportedFolder.h"
#include "platform/DirectoryExchange.h"
#include "platform/DiskSync.h"
#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLockFile>

#include <chrono>
#include <filesystem>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(OutputFolder)
};

constexpr auto folderName = "Pantrywise"_L1;

// A lock that was left behind is taken over at this age. QLockFile does that at once if it was left
// by a program on this computer, and it never takes over a lock whose program is running here,
// since that also holds it with flock(). A network file system without flock() shows only the age.
constexpr std::chrono::minutes abandonedAfter = 5min;
constexpr std::chrono::minutes freshFor = 1min;

// Returns the folder that contains the folder of pages: the chosen one, or its parent if the chosen
// one is itself a folder of pages.
QString parentOf(const QString &chosen)
{
    const QDir directory(QDir::cleanPath(chosen));
    if (directory.dirName() == folderName && exportedFiles(directory.path()))
        return QFileInfo(directory.absolutePath()).path();
    return directory.path();
}

bool isTaken(const QString &path)
{
    const QFileInfo there(path);
    return there.exists() || there.isSymLink();
}

} // namespace

OutputFolder::OutputFolder(const QString &chosen)
    : m_parent(parentOf(chosen))
    , m_path(QDir(m_parent).filePath(folderName))
    , m_lock(std::make_unique<QLockFile>(QDir(m_parent).filePath("Pantrywise.lock"_L1)))
{
    if (lock())
        tidyUp();
    requireExported(m_path);
}

OutputFolder::~OutputFolder()
{
    if (!m_staging.isEmpty())
        removePages(m_staging, m_files);
}

// Returns false if no lock file can be made there; then no staging folder can be made either.
bool OutputFolder::lock()
{
    const QString path = m_lock->fileName();
    qint64 process = 0;
    QString computer;
    QString program;
    // A file of somebody else is never taken over. A power cut can leave an empty lock.
    const bool canBeLock =
        QFileInfo(path).size() == 0 || m_lock->getLockInfo(&process, &computer, &program);
    m_lock->setStaleLockTime(canBeLock ? std::chrono::milliseconds(abandonedAfter) : 0ms);
    if (m_lock->tryLock())
        return true;
    if (m_lock->error() == QLockFile::LockFailedError)
        fail(Text::tr("another export to that folder is running, or one that was interrupted has "
                      "left the file %1, which you can then delete")
                 .arg(QDir::toNativeSeparators(path)));
    return false;
}

// Keeps another computer from taking over the lock during a long export.
void OutputFolder::keepLockFresh() const
{
    using Clock = std::filesystem::file_time_type::clock;
    const std::filesystem::path path = platform::nativePath(m_lock->fileName());
    std::error_code failure;
    const auto written = std::filesystem::last_write_time(path, failure);
    if (!failure && Clock::now() - written > freshFor)
        std::filesystem::last_write_time(path, Clock::now(), failure);
}

// If an export was interrupted while it exchanged the folders in steps, the old one was put aside.
void OutputFolder::tidyUp() const
{
    for (const QString &folder : leftOverFolders(m_parent)) {
        if (folder.endsWith(QLatin1StringView(platform::asideSuffix)) && !QFileInfo::exists(m_path))
            QDir().rename(folder, m_path);
        else if (const auto files = exportedFiles(folder))
            removePages(folder, *files);
    }
}

void OutputFolder::fail(const QString &reason) const
{
    throw ExportError(
        Text::tr("The pages could not be written to %1: %2.\nNothing was exported, and earlier "
                 "pages are as they were. Correct that, or choose another place.")
            .arg(QDir::toNativeSeparators(m_path), reason));
}

void OutputFolder::failIf(const std::error_code &failure) const
{
    if (failure)
        fail(QString::fromStdString(failure.message()));
}

void OutputFolder::begin(const QStringList &names)
{
    QString folder = QDir(m_parent).filePath(stagingName);
    while (isTaken(folder) || isTaken(folder + QLatin1StringView(platform::asideSuffix)))
        folder += u'+';
    std::error_code failure;
    if (!std::filesystem::create_directory(platform::nativePath(folder), failure))
        fail(QString::fromStdString(failure.message()));
    m_staging = folder;
    m_files = {names.begin(), names.end()};
    m_files.insert(fileListName);
    write(fileListName, fileListOf(names));
    // The next export recognizes the folder by its list if a power cut stops this one.
    failIf(platform::syncToDisk(platform::nativePath(platform::joinPath(folder, fileListName))));
}

void OutputFolder::write(const QString &name, QByteArrayView bytes)
{
    keepLockFresh();
    QFile file(platform::joinPath(m_staging, name));
    if (!file.open(QIODevice::NewOnly | QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    while (!bytes.isEmpty()) {
        const qint64 count = file.write(bytes.data(), bytes.size()); // may write only a part
        if (count <= 0)
            fail(file.errorString());
        bytes = bytes.sliced(count);
    }
    file.close(); // some file systems report a full disk only now
    if (file.error() != QFileDevice::NoError)
        fail(file.errorString());
}

void OutputFolder::commit()
{
    requireExported(m_path); // something else may have been put into it since
    // Without this, a power cut could leave the new names with empty files.
    failIf(platform::syncFileSystem(platform::nativePath(m_staging)));
    failIf(platform::exchangeDirectories(platform::nativePath(m_staging),
                                         platform::nativePath(m_path)));
    const QString old = std::exchange(m_staging, {});
    // The old pages must not be removed until the disk has the new ones in their place.
    if (const std::error_code failure = platform::syncToDisk(platform::nativePath(m_parent)))
        throw ExportError(Text::tr("The pages were written to %1, but the disk reports an error: "
                                   "%2.\nThey may be lost if the power fails. Earlier pages are "
                                   "kept in %3 until the next export.")
                              .arg(QDir::toNativeSeparators(m_path),
                                   QString::fromStdString(failure.message()),
                                   QDir::toNativeSeparators(old)));
    if (const auto files = exportedFiles(old))
        removePages(old, *files);
}
