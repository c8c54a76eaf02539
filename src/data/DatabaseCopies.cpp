#include "data/DatabaseCopies.h"

#include "data/Database.h"
#include "data/DatabaseError.h"
#include "data/DatabaseFile.h"
#include "platform/Directory.h"
#include "platform/DiskSync.h"
#include "platform/FileCopy.h"
#include "platform/Paths.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

constexpr qsizetype keptDays = 7;
constexpr qsizetype keptMonths = 12;

// The database and the files that SQLite makes beside it. A journal that is left beside another
// database damages that one.
constexpr std::array databaseSuffixes = {"", "-journal", "-wal", "-shm"};

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

bool isSameMonth(QDate a, QDate b)
{
    return a.year() == b.year() && a.month() == b.month();
}

QSet<QDate> keptAmong(QList<QDate> days)
{
    std::sort(days.begin(), days.end());
    QList<QDate> firstDays; // of the months
    for (const QDate day : std::as_const(days)) {
        if (firstDays.isEmpty() || !isSameMonth(firstDays.constLast(), day))
            firstDays += day;
    }
    const QList<QDate> kept = days.last(std::min(keptDays, days.size()))
        + firstDays.last(std::min(keptMonths, firstDays.size()));
    return {kept.begin(), kept.end()};
}

// Creates the folder if it does not exist.
std::error_code prepareFolder(const fs::path &folder)
{
    std::error_code failure;
    if (fs::create_directory(folder, failure))
        return platform::syncToDisk(folder.parent_path());
    return failure == std::errc::file_exists ? std::make_error_code(std::errc::not_a_directory)
                                             : failure;
}

// A copy must not take the room that the program needs for the work itself.
std::error_code checkRoomLeft(const fs::path &copy)
{
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(copy, failure);
    if (!failure && fs::space(copy, failure).available < size)
        return std::make_error_code(std::errc::no_space_on_device);
    return failure;
}

// Writes the copy under another name at first, which replaces what a program that was killed has
// left there.
std::error_code copyInto(const fs::path &target, const fs::path &temporary, int database)
{
    if (isTaken(target)) // by a folder or a link
        return std::make_error_code(std::errc::file_exists);
    std::error_code failure = platform::copyOpenFile(database, temporary);
    if (failure)
        return failure;
    failure = checkRoomLeft(temporary);
    if (!failure)
        failure = platform::renameDurably(temporary, target);
    if (failure) {
        std::error_code ignored;
        fs::remove(temporary, ignored);
    }
    return failure;
}

// Renames files, and takes all of that back unless keep() is called.
class Renaming
{
public:
    Renaming() = default;
    ~Renaming()
    {
        std::error_code ignored;
        for (auto move = m_moves.rbegin(); move != m_moves.rend(); ++move)
            fs::rename(move->second, move->first, ignored);
    }

    std::error_code rename(const fs::path &from, const fs::path &to)
    {
        std::error_code failure;
        fs::rename(from, to, failure);
        if (!failure)
            m_moves.emplace_back(from, to);
        return failure;
    }
    void keep() { m_moves.clear(); }

private:
    Q_DISABLE_COPY_MOVE(Renaming)

    std::vector<std::pair<fs::path, fs::path>> m_moves;
};

} // namespace

DatabaseCopies::DatabaseCopies(const QString &databasePath)
    : m_database(platform::nativePath(DatabaseFile::resolvedPath(databasePath)))
    , m_folder(m_database.parent_path() / "copies")
    , m_state(stateOf(m_database))
{
}

DatabaseCopies::FileState DatabaseCopies::stateOf(const fs::path &path)
{
    constexpr qint64 second = 1'000'000'000;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size,
            status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec};
}

fs::path DatabaseCopies::pathOfCopy(QDate day) const
{
    fs::path name = m_database.stem();
    name += ' ' + day.toString(Qt::ISODate).toStdString();
    name += m_database.extension();
    return m_folder / name;
}

// The days of all files with exactly the name of a copy.
QList<QDate> DatabaseCopies::days() const
{
    const auto prefix = static_cast<qsizetype>(m_database.stem().native().size() + 1);
    constexpr qsizetype dateSize = "2026-11-25"_L1.size();
    QList<QDate> found;
    for (const QByteArray &name :
         platform::filesEndingIn(m_database.extension().native(), m_folder)) {
        const QByteArray date = name.mid(prefix, dateSize);
        const QDate day = QDate::fromString(QString::fromLatin1(date), Qt::ISODate);
        if (day.isValid() && name.toStdString() == pathOfCopy(day).filename() && hasCopyOf(day))
            found += day;
    }
    return found;
}

bool DatabaseCopies::hasCopyOf(QDate day) const
{
    std::error_code ignored;
    return fs::is_regular_file(fs::symlink_status(pathOfCopy(day), ignored));
}

void DatabaseCopies::makeCopy(DatabaseFile &database, QDate day) const
{
    const auto fail = [this](const QString &reason) {
        throw DatabaseError(
            tr("Today's copy of your recipes could not be made in %1: %2.\n"
               "You can go on working. Correct this, so that there is a copy of today if you ever "
               "need it.")
                .arg(platform::displayPath(m_folder), reason));
    };
    if (const auto header = database.header(); header && header->isWriteAhead)
        fail(tr("another program keeps the newest recipes in a second file"));
    std::error_code failure = prepareFolder(m_folder);
    if (!failure)
        failure = copyInto(pathOfCopy(day), withSuffix(m_folder / m_database.filename(), ".new"),
                           database.handle());
    if (failure)
        fail(QString::fromStdString(failure.message()));
    removeOld();
}

void DatabaseCopies::removeOld() const
{
    const QList<QDate> all = days();
    const QSet<QDate> kept = keptAmong(all);
    for (const QDate day : all) {
        std::error_code ignored; // the next day tries again
        if (!kept.contains(day))
            fs::remove(pathOfCopy(day), ignored);
    }
}

std::optional<DatabaseCopy> DatabaseCopies::newestSoundCopy(QDate today) const
{
    QList<QDate> newestFirst = days();
    // A day after today was given by a clock that was wrong, so it says nothing about the age.
    std::sort(newestFirst.begin(), newestFirst.end(), [today](QDate a, QDate b) {
        return std::pair(a <= today, a) > std::pair(b <= today, b);
    });
    for (const QDate day : std::as_const(newestFirst)) {
        if (const auto recipes =
                Database::countRecipesIfSound(platform::displayPath(pathOfCopy(day))))
            return DatabaseCopy{pathOfCopy(day), day, *recipes};
    }
    return {};
}

fs::path DatabaseCopies::pathForDamaged(QDate day) const
{
    const std::string name =
        m_database.stem().string() + " damaged " + day.toString(Qt::ISODate).toStdString();
    for (int number = 1;; ++number) {
        fs::path path = m_database.parent_path() / name;
        if (number > 1)
            path += ' ' + std::to_string(number);
        path += m_database.extension();
        const auto isFree = [&](const char *suffix) { return !isTaken(withSuffix(path, suffix)); };
        if (std::all_of(databaseSuffixes.begin(), databaseSuffixes.end(), isFree))
            return path;
    }
}

void DatabaseCopies::putBack(const DatabaseCopy &copy, QDate day) const
{
    if (stateOf(m_database) != m_state)
        return;
    fs::path temporary = withSuffix(m_database, ".new");
    while (isTaken(temporary))
        temporary += '+';
    std::error_code failure = platform::copyFile(copy.path, temporary);
    if (!failure)
        failure = replaceDatabase(temporary, pathForDamaged(day));
    if (!failure)
        return;
    std::error_code ignored;
    fs::remove(temporary, ignored);
    throw DatabaseError(
        tr("The copy could not be put in the place of %1: %2. Nothing was changed. "
           "Correct this and try again.")
            .arg(platform::displayPath(m_database), QString::fromStdString(failure.message())));
}

// The whole copy is on the disk before anything is renamed.
std::error_code DatabaseCopies::replaceDatabase(const fs::path &copy, const fs::path &damaged) const
{
    Renaming renaming;
    for (const char *suffix : databaseSuffixes) {
        const fs::path file = withSuffix(m_database, suffix);
        if (!isTaken(file))
            continue;
        if (const auto failure = renaming.rename(file, withSuffix(damaged, suffix)))
            return failure;
    }
    std::error_code failure = renaming.rename(copy, m_database);
    if (!failure)
        failure = platform::syncToDisk(m_database.parent_path());
    if (!failure)
        renaming.keep();
    return failure;
}
