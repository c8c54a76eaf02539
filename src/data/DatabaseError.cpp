#include "data/DatabaseError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(DatabaseError)
};

// Returns whether the file begins as one in the Access format does: with four bytes and the name
// of the database engine.
bool isAccessFormat(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(19);
    return start.startsWith(QByteArrayView("\0\1\0\0Standard ", 13));
}

QString cannotOpenText(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return Text::tr("The recipe database %1 is missing. Put your copy of it back and try "
                        "again.");
    if (file.isDir())
        return Text::tr(
            "%1 is a folder, but it should be the recipe database. Move the folder away, "
            "put your copy of the recipe database there and try again.");
    if (!file.isReadable())
        return Text::tr(
            "You are not allowed to read the recipe database %1. Allow yourself to read "
            "and write it and try again.");
    return Text::tr("The recipe database %1 could not be opened. Allow yourself to write in its "
                    "folder and try again.");
}

QString notOursText(const QString &path)
{
    if (isAccessFormat(path))
        return Text::tr("%1 is a database in the Access format, which this version of Pantrywise "
                        "does not read. Put a recipe database of this version in its place and try "
                        "again.");
    if (QFileInfo(path).size() == 0)
        return Text::tr(
            "The recipe database %1 is empty. Put your last copy of it in its place and try "
            "again.");
    return Text::tr(
        "%1 is not a recipe database. Put your copy of the recipe database in its place and try "
        "again.");
}

QString readOnlyText(const QString &path, int code)
{
    if (code == SQLITE_READONLY_DBMOVED)
        return Text::tr(
            "The recipe database %1 was moved or replaced while Pantrywise had it open. Nothing "
            "was stored. End Pantrywise, put the right file in its place and start again.");
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    if (file.isWritable() && !folder.isWritable())
        return Text::tr("Nothing can be stored in the recipe database %1, because its folder is "
                        "read-only. Allow yourself to write in the folder and try again.");
    return Text::tr("Nothing can be stored in the recipe database %1, because it is read-only. "
                    "Allow yourself to write it and start Pantrywise again.");
}

// Messages such as "no such table: main.Recipes" end with the name of what is missing.
QString statementText(const QString &path, const QString &message)
{
    const QString missing = message.section(": "_L1, 1).section(u'.', -1);
    if (message.startsWith("no such table"_L1)) {
        if (QFileInfo(path).size() == 0)
            return notOursText(path);
        return Text::
            tr("%1 is not a recipe database: the table %2 is missing. Put your copy of the recipe "
               "database in its place and try again.")
                .replace("%2"_L1, missing);
    }
    if (message.startsWith("no such column"_L1))
        return Text::tr("%1 is not a complete recipe database: the field %2 is missing. Put your "
                        "copy of the recipe database in its place and try again.")
            .replace("%2"_L1, missing);
    return {};
}

QString damagedText(DatabaseError::Operation operation)
{
    return operation == DatabaseError::Operation::Writing
        ? Text::tr("The recipe database %1 is damaged, so nothing was stored in it. Keep it, "
                   "because parts of it may be saved; put your last copy of it in its place and "
                   "try again.")
        : Text::tr("The recipe database %1 is damaged. Keep it, because parts of it may be "
                   "saved; put your last copy of it in its place and try again.");
}

// Whether a copy of the file that is put in its place would help.
bool isUnusable(const QString &path, int code, const QString &message)
{
    switch (code & 0xFF) {
    case SQLITE_CANTOPEN:
        return !QFileInfo::exists(path);
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return true;
    case SQLITE_ERROR:
        return !statementText(path, message).isEmpty();
    default:
        return false;
    }
}

QString templateFor(const QString &path, int code, const QString &message,
                    DatabaseError::Operation operation)
{
    switch (code & 0xFF) {
    case SQLITE_CANTOPEN:
        return cannotOpenText(path);
    case SQLITE_NOTADB:
        return notOursText(path);
    case SQLITE_CORRUPT:
        return damagedText(operation);
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return readOnlyText(path, code);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Text::tr(
            "The recipe database %1 is in use by another program. Nothing was stored. Wait until "
            "that program is done, or end it, and try again.");
    case SQLITE_FULL:
        return Text::tr(
            "The disk with the recipe database %1 is full. Nothing was stored. Make room and try "
            "again.");
    case SQLITE_IOERR:
        return Text::tr(
            "The disk with the recipe database %1 could not be read or written. Check that it "
            "is connected and not full and try again.");
    case SQLITE_ERROR:
        return statementText(path, message);
    default:
        return {};
    }
}

} // namespace

std::exception_ptr DatabaseError::fromSqlite(const QString &path, int code, const QString &message,
                                             Operation operation)
{
    const QString native = QDir::toNativeSeparators(path);
    const QString text = templateFor(path, code, message, operation);
    const QString shown = text.isEmpty()
        ? Text::tr("The recipe database %1 could not be used: %2").arg(native, message)
        : text.arg(native);
    if (isUnusable(path, code, message))
        return std::make_exception_ptr(UnusableDatabase(path, shown));
    return std::make_exception_ptr(DatabaseError(shown));
}

UnusableDatabase UnusableDatabase::damaged(const QString &path, Operation operation)
{
    return {path, damagedText(operation).arg(QDir::toNativeSeparators(path))};
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
            .arg(QDir::toNativeSeparators(path)));
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
