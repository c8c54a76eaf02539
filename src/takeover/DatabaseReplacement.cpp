#include "takeover/DatabaseReplacement.h"

#include "data/DatabaseFile.h"
#include "platform/DiskSync.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <tuple>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

// What SQLite makes beside a database. If it found a journal of another database beside the new
// file, it would write old pages into that.
constexpr std::array journalSuffixes = {"-journal", "-wal", "-shm"};

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

bool isTaken(const fs::path &path)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

fs::path withSuffix(fs::path path, const char *suffix)
{
    path += suffix;
    return path;
}

bool isSameFile(const fs::path &a, const fs::path &b)
{
    struct stat first = {};
    struct stat second = {};
    return ::lstat(a.c_str(), &first) == 0 && ::lstat(b.c_str(), &second) == 0
        && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::error_code renameWithoutReplacing(const fs::path &from, const fs::path &to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS) // not supported by the file system or the kernel
        return lastError();
    if (isTaken(to))
        return std::make_error_code(std::errc::file_exists);
    std::error_code failure;
    fs::rename(from, to, failure);
    return failure;
}

std::error_code writeFile(const fs::path &path, const QByteArray &bytes)
{
    constexpr mode_t readableByOwner = S_IRUSR | S_IWUSR;
    const int file =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readableByOwner);
    if (file < 0)
        return lastError();
    std::error_code failure;
    for (qsizetype written = 0; written < bytes.size() && !failure;) {
        const ssize_t count = ::write(file, bytes.constData() + written,
                                      static_cast<std::size_t>(bytes.size() - written));
        if (count >= 0)
            written += count;
        else if (errno != EINTR)
            failure = lastError();
    }
    if (!failure && ::fsync(file) != 0)
        failure = lastError();
    ::close(file);
    return failure;
}

std::error_code moveJournalsOf(const fs::path &database, const fs::path &to)
{
    for (const char *suffix : journalSuffixes) {
        const fs::path journal = withSuffix(database, suffix);
        if (!isTaken(journal))
            continue;
        if (const auto failure = renameWithoutReplacing(journal, withSuffix(to, suffix)))
            return failure;
    }
    return {};
}

bool refusesLinks(const std::error_code &failure)
{
    return failure == std::errc::operation_not_permitted
        || failure == std::errc::operation_not_supported
        || failure == std::errc::function_not_supported || failure == std::errc::too_many_links;
}

fs::path resolved(const QString &databasePath)
{
    return platform::nativePath(DatabaseFile::resolvedPath(databasePath));
}

fs::path folderBeside(const fs::path &database)
{
    return withSuffix(database, ".takeover");
}

QString reasonOf(const std::error_code &failure)
{
    return QString::fromStdString(failure.message());
}

} // namespace

bool DatabaseReplacement::isInProgress(const QString &databasePath)
{
    std::error_code ignored;
    return fs::is_directory(fs::symlink_status(folderBeside(resolved(databasePath)), ignored));
}

DatabaseReplacement::DatabaseReplacement(const QString &databasePath, Keeping keeping)
    : m_database(resolved(databasePath))
    , m_keeping(keeping)
    , m_folder(folderBeside(m_database))
{
    if (const auto failure = m_folder.lock()) {
        if (failure == std::errc::device_or_resource_busy)
            throw ReplacementInProgress(
                tr("Another Pantrywise is taking over the recipes in %1. Wait until it has "
                   "finished and try again.")
                    .arg(platform::displayPath(m_database)));
        throw platform::UserVisibleError(
            tr("The recipes in %1 were not taken over, because the folder %2 could not be created: "
               "%3. Correct this and start Pantrywise again.")
                .arg(platform::displayPath(m_database), platform::displayPath(m_folder.path()),
                     reasonOf(failure)));
    }
    if (const auto report = storedReport()) {
        m_report = *report;
        if (settle())
            m_earlierReport = report;
        else if (isTaken(kept()))
            m_strandedName = m_report.keptName;
    }
    if (!m_earlierReport && m_strandedName.isEmpty())
        removeFiles();
    m_oldState = stateOf(m_database);
}

// If neither file could be put in the old one's place, the next object tries that again.
DatabaseReplacement::~DatabaseReplacement()
{
    if (isTaken(m_database) || !isTaken(reportPath()))
        removeFiles();
}

DatabaseReplacement::FileState DatabaseReplacement::stateOf(const fs::path &path)
{
    constexpr qint64 second = 1'000'000'000;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size,
            status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec};
}

QString DatabaseReplacement::newFile() const
{
    return platform::displayPath(newPath());
}

fs::path DatabaseReplacement::kept() const
{
    return folder() / platform::nativePath(m_report.keptName).filename();
}

QString DatabaseReplacement::freeName() const
{
    for (int number = 1;; ++number) {
        fs::path name = m_database.stem();
        name += number > 1 ? " old " + std::to_string(number) : " old";
        name += m_database.extension();
        const fs::path path = folder() / name;
        if (!isTaken(path)
            && std::none_of(journalSuffixes.begin(), journalSuffixes.end(),
                            [&](const char *suffix) { return isTaken(withSuffix(path, suffix)); }))
            return platform::displayPath(name);
    }
}

ReplacementReport DatabaseReplacement::replace(const QString &summary, const QStringList &notes)
{
    begin(summary, notes);
    while (runNextStep()) { }
    return m_report;
}

void DatabaseReplacement::begin(const QString &summary, const QStringList &notes)
{
    if (stateOf(m_database) != m_oldState)
        throw platform::UserVisibleError(
            tr("Another program has changed %1 while its recipes were being taken over. Your file "
               "was left as it is. Close the other program and start Pantrywise again.")
                .arg(platform::displayPath(m_database)));
    m_report = {freeName(), summary, notes};
    m_nextStep = 0;
}

bool DatabaseReplacement::runNextStep()
{
    using Step = std::error_code (DatabaseReplacement::*)();
    // The report is stored after the new file is complete and before anything beside the old file
    // is changed: settle() depends on that.
    constexpr std::array<Step, 5> steps = {
        &DatabaseReplacement::matchOwnerAndPermissions, &DatabaseReplacement::storeReport,
        &DatabaseReplacement::moveJournals, &DatabaseReplacement::keepOld,
        &DatabaseReplacement::putNewInPlace};
    const std::error_code failure = (this->*steps.at(m_nextStep))();
    if (!failure)
        return ++m_nextStep < steps.size();
    if (!settle())
        throw platform::UserVisibleError(
            tr("The new file could not be put in the place of %1: %2. Nothing was changed. Correct "
               "this and start Pantrywise again.")
                .arg(platform::displayPath(m_database), reasonOf(failure)));
    return false;
}

// Only root can give the file to another owner. A user can give it to a group of theirs, so that
// those who share the old file also share the new one.
std::error_code DatabaseReplacement::matchOwnerAndPermissions()
{
    struct stat old = {};
    if (::stat(m_database.c_str(), &old) != 0)
        return lastError();
    if (::chown(newPath().c_str(), old.st_uid, old.st_gid) != 0)
        std::ignore = ::chown(newPath().c_str(), static_cast<uid_t>(-1), old.st_gid);
    constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;
    ::chmod(newPath().c_str(), (old.st_mode & permissions) | S_IRUSR | S_IWUSR);
    return platform::syncToDisk(newPath());
}

std::error_code DatabaseReplacement::storeReport()
{
    const QByteArray json =
        QJsonDocument(QJsonObject{{u"keptName"_s, m_report.keptName},
                                  {u"summary"_s, m_report.summary},
                                  {u"notes"_s, QJsonArray::fromStringList(m_report.notes)}})
            .toJson();
    if (const auto failure = writeFile(reportPath(), json))
        return failure;
    if (const auto failure = platform::syncToDisk(m_folder.path()))
        return failure;
    return platform::syncToDisk(folder());
}

std::optional<ReplacementReport> DatabaseReplacement::storedReport() const
{
    QFile file(platform::displayPath(reportPath()));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
    if (json.isEmpty()) // it had not reached the disk
        return {};
    return ReplacementReport{json["keptName"_L1].toString(), json["summary"_L1].toString(),
                             json["notes"_L1].toVariant().toStringList()};
}

std::error_code DatabaseReplacement::moveJournals()
{
    return moveJournalsOf(m_database, kept());
}

std::error_code DatabaseReplacement::keepOld()
{
    std::error_code failure;
    if (m_keeping == Keeping::ByLink)
        fs::create_hard_link(m_database, kept(), failure);
    if (m_keeping == Keeping::ByRenaming || refusesLinks(failure))
        failure = renameWithoutReplacing(m_database, kept());
    return failure ? failure : platform::syncToDisk(folder());
}

// If the folder cannot be synced, either file may have the name after a power cut. Both are
// complete, so that this is no failure.
std::error_code DatabaseReplacement::putNewInPlace()
{
    std::error_code failure;
    fs::rename(newPath(), m_database, failure);
    if (!failure)
        std::ignore = platform::syncToDisk(folder());
    return failure;
}

// Finishes or undoes a replacement whose report is stored: the old file gets its own name back if
// the new one cannot be put in its place. Returns whether the new file is in its place.
bool DatabaseReplacement::settle()
{
    if (!isTaken(m_database)) {
        std::error_code failure = putNewInPlace();
        if (!failure)
            return true;
        if (isTaken(kept()))
            failure = renameWithoutReplacing(kept(), m_database);
        if (failure && isTaken(kept()))
            throw platform::UserVisibleError(
                tr("%1 is missing: Pantrywise was interrupted while it replaced that file, and "
                   "cannot go on: %2. Your old file is \"%3\". Correct this and start Pantrywise "
                   "again.")
                    .arg(platform::displayPath(m_database), reasonOf(failure), m_report.keptName));
    }
    const bool isOldInPlace = DatabaseFile(platform::displayPath(m_database)).isAccessFormat();
    if (isOldInPlace)
        undo();
    return !isOldInPlace && isTaken(m_database) && !isTaken(newPath());
}

void DatabaseReplacement::undo()
{
    if (isSameFile(m_database, kept()))
        ::unlink(kept().c_str());
    if (!isTaken(kept()))
        std::ignore = moveJournalsOf(kept(), m_database);
}

// Removes the report first, because it says that the new file is complete.
void DatabaseReplacement::removeFiles() const
{
    std::error_code ignored;
    fs::remove(reportPath(), ignored);
    fs::remove(newPath(), ignored);
    for (const char *suffix : journalSuffixes)
        fs::remove(withSuffix(newPath(), suffix), ignored);
}
