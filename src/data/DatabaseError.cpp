#include "data/DatabaseError.h"

#include "data/DatabaseFile.h"

#include <QDir>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(DatabaseError)
};

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// What SQLite has reported, and about which file.
struct Failure {
    QString path;
    int code;
    QString message;
    bool isWriting;
};

std::exception_ptr error(const QString &text)
{
    return std::make_exception_ptr(DatabaseError(text));
}

std::exception_ptr unusable(const QString &path, const QString &problem)
{
    return std::make_exception_ptr(UnusableDatabase(path, problem.arg(native(path))));
}

// Returns the folder that may not be searched and thus hides the file; empty if all may.
QString closedFolderOf(const QString &file)
{
    QFileInfo folder(QFileInfo(file).path());
    while (!folder.exists() && !folder.isRoot())
        folder.setFile(folder.path());
    return folder.isExecutable() ? QString() : folder.filePath();
}

// Returns the first of the files that SQLite uses that may not be both read and written, or the
// folder in which it makes them; empty if nothing is missing.
QString forbiddenPart(const QString &file)
{
    for (const QLatin1StringView suffix : {""_L1, "-journal"_L1, "-wal"_L1, "-shm"_L1}) {
        const QFileInfo part(file + suffix);
        if (part.exists() && !(part.isReadable() && part.isWritable()))
            return part.filePath();
    }
    const QFileInfo folder(QFileInfo(file).path());
    return folder.isWritable() ? QString() : folder.filePath();
}

std::exception_ptr missingRightError(const Failure &failure, const QString &forbidden)
{
    const QString file = DatabaseFile::resolvedPath(failure.path);
    if (!failure.isWriting)
        return error(Text::tr("The recipe database %1 cannot be read, because you are not allowed "
                              "to read and write %2. Allow yourself to do so and try again.")
                         .arg(native(failure.path), native(forbidden)));
    if (forbidden == file)
        return error(
            Text::tr("Nothing can be stored in the recipe database %1, because it is read-only. "
                     "Allow yourself to write it and start Pantrywise again.")
                .arg(native(forbidden)));
    if (QFileInfo(forbidden).isDir())
        return error(
            Text::tr("Nothing can be stored in the recipe database %1, because its folder %2 is "
                     "read-only. Allow yourself to write in the folder and try again.")
                .arg(native(failure.path), native(forbidden)));
    return error(Text::tr("Nothing can be stored in the recipe database %1, because %2 is "
                          "read-only. Allow yourself to write it and start Pantrywise again.")
                     .arg(native(failure.path), native(forbidden)));
}

std::exception_ptr cannotOpenError(const Failure &failure)
{
    const QString file = DatabaseFile::resolvedPath(failure.path);
    if (!QFileInfo::exists(file)) {
        if (const QString folder = closedFolderOf(file); !folder.isEmpty())
            return error(Text::tr("You are not allowed to open the folder %1, in which the recipe "
                                  "database is. Allow yourself to open it and try again.")
                             .arg(native(folder)));
        return unusable(file, Text::tr("The recipe database %1 is missing."));
    }
    if (QFileInfo(file).isDir())
        return error(
            Text::tr("%1 is a folder, but it should be the recipe database. Move the folder away, "
                     "put your copy of the recipe database there and try again.")
                .arg(native(file)));
    if (!QFileInfo(file).isReadable())
        return error(
            Text::tr("You are not allowed to read the recipe database %1. Allow yourself to read "
                     "and write it and try again.")
                .arg(native(file)));
    if (const QString forbidden = forbiddenPart(file); !forbidden.isEmpty())
        return missingRightError(failure, forbidden);
    return error(Text::tr("The recipe database %1 could not be opened. Check that its disk is "
                          "connected and try again.")
                     .arg(native(failure.path)));
}

std::exception_ptr notOursError(const QString &path)
{
    if (QFileInfo(path).size() == 0)
        return unusable(path, Text::tr("The recipe database %1 is empty."));
    return unusable(path, Text::tr("%1 is not a recipe database."));
}

std::exception_ptr readOnlyError(const Failure &failure)
{
    if (failure.code == SQLITE_READONLY_DBMOVED)
        return error(
            Text::tr("The recipe database %1 was moved or replaced while Pantrywise had it open. "
                     "Nothing was stored. End Pantrywise, put the right file in its place and "
                     "start again.")
                .arg(native(failure.path)));
    const QString file = DatabaseFile::resolvedPath(failure.path);
    const QString forbidden = forbiddenPart(file);
    // The right may have been given since SQLite opened the file.
    return missingRightError(failure, forbidden.isEmpty() ? file : forbidden);
}

std::exception_ptr lockedError(const Failure &failure)
{
    const QString text = failure.isWriting
        ? Text::tr("The recipe database %1 is in use by another program. Nothing was stored. Wait "
                   "until that program is done, or end it, and try again.")
        : Text::tr("The recipe database %1 is in use by another program. Wait until that program "
                   "is done, or end it, and try again.");
    return error(text.arg(native(failure.path)));
}

std::exception_ptr fullDiskError(const Failure &failure)
{
    // SQLite sorts many rows in a temporary file.
    const QString text = failure.isWriting
        ? Text::tr(
            "The disk with the recipe database %1 is full. Nothing was stored. Make room and "
            "try again.")
        : Text::tr("The disk is full. Room is needed to read the recipe database %1. Make room "
                   "and try again.");
    return error(text.arg(native(failure.path)));
}

std::exception_ptr diskError(const Failure &failure)
{
    // The journal that SQLite has restored the file from cannot be deleted in a read-only folder.
    const QString forbidden = forbiddenPart(DatabaseFile::resolvedPath(failure.path));
    if (failure.code == SQLITE_IOERR_DELETE && !forbidden.isEmpty())
        return missingRightError(failure, forbidden);
    const QString text = failure.isWriting
        ? Text::tr("The disk with the recipe database %1 could not be written. Nothing was "
                   "stored. Check that it is connected and not full and try again.")
        : Text::tr("The disk with the recipe database %1 could not be read. Check that it is "
                   "connected and try again.");
    return error(text.arg(native(failure.path)));
}

// Messages such as "no such table: main.Recipes" end with the name of what is missing.
std::exception_ptr statementError(const Failure &failure)
{
    const QString missing = failure.message.section(": "_L1, 1).section(u'.', -1);
    if (failure.message.startsWith("no such table"_L1)) {
        if (QFileInfo(failure.path).size() == 0)
            return notOursError(failure.path);
        return unusable(failure.path,
                        Text::tr("%1 is not a recipe database: the table %2 is missing.")
                            .replace("%2"_L1, missing));
    }
    if (failure.message.startsWith("no such column"_L1))
        return unusable(failure.path,
                        Text::tr("%1 is not a complete recipe database: the field %2 is missing.")
                            .replace("%2"_L1, missing));
    if (failure.message == "unsupported file format"_L1)
        return notOursError(failure.path);
    return {};
}

// Returns null for what SQLite's own message must explain.
std::exception_ptr knownError(const Failure &failure)
{
    using Operation = DatabaseError::Operation;
    if (failure.code == SQLITE_IOERR_NOMEM || failure.code == SQLITE_NOMEM)
        return error(Text::tr("There is not enough memory for the recipe database %1. Close other "
                              "programs and try again.")
                         .arg(native(failure.path)));
    switch (failure.code & 0xFF) {
    case SQLITE_CANTOPEN:
        return cannotOpenError(failure);
    case SQLITE_NOTADB:
        return notOursError(failure.path);
    case SQLITE_CORRUPT:
        return std::make_exception_ptr(UnusableDatabase::damaged(
            failure.path, failure.isWriting ? Operation::Writing : Operation::Reading));
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return readOnlyError(failure);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return lockedError(failure);
    case SQLITE_FULL:
        return fullDiskError(failure);
    case SQLITE_IOERR:
        return diskError(failure);
    case SQLITE_ERROR:
        return statementError(failure);
    default:
        return {};
    }
}

} // namespace

std::exception_ptr DatabaseError::fromSqlite(const QString &path, int code, const QString &message,
                                             Operation operation)
{
    if (std::exception_ptr known =
            knownError({path, code, message, operation == Operation::Writing}))
        return known;
    return error(
        Text::tr("The recipe database %1 could not be used: %2").arg(native(path), message));
}

QString DatabaseError::nothingStored()
{
    return Text::tr("Nothing was stored.");
}

DatabaseError DatabaseError::newerVersion(const QString &path)
{
    return DatabaseError(
        Text::tr("The recipe database %1 was made by a newer version of Pantrywise. Install that "
                 "version to open it. The file has not been changed.")
            .arg(native(path)));
}

std::exception_ptr DatabaseError::keysUsedUp(const QString &path, const QString &table)
{
    return error(Text::tr("The table %2 of the recipe database %1 has a row with the largest "
                          "possible key, so no row can be added. Nothing was stored. Put a copy of "
                          "the recipe database from before that in its place and try again.")
                     .arg(native(path), table));
}

UnusableDatabase::UnusableDatabase(const QString &path, const QString &problem,
                                   const QString &advice)
    : DatabaseError(problem + u' ' + advice)
    , m_path(path)
    , m_problem(problem)
{
}

QString UnusableDatabase::usualAdvice()
{
    return Text::tr("Put your last copy of it in its place and try again.");
}

UnusableDatabase UnusableDatabase::damaged(const QString &path, Operation operation)
{
    const QString problem = operation == Operation::Writing
        ? Text::tr("The recipe database %1 is damaged. Nothing was stored.")
        : Text::tr("The recipe database %1 is damaged.");
    return {path, problem.arg(native(path)),
            Text::tr("Keep it, because parts of it may be saved; put your last copy of it in its "
                     "place and try again.")};
}

UnusableDatabase UnusableDatabase::accessFormat(const QString &path)
{
    return {
        path,
        Text::tr("%1 is a database in the Access format, which this version of Pantrywise does "
                 "not read.")
            .arg(native(path)),
        Text::tr("Start Pantrywise again to be asked whether to take over the recipes in it, or "
                 "put a recipe database of this version in its place and try again.")};
}
