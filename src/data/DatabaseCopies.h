#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QString>

#include <filesystem>
#include <optional>
#include <system_error>

#include <sys/stat.h>

class DatabaseFile;

struct DatabaseCopy {
    std::filesystem::path path;
    QDate day; // it was made before the first write of this day
    qint64 recipes = 0; // how many it contains
};

// The copies that the program makes of a recipe database: the files "data 2026-11-25.rbk" in the
// folder "copies" beside "data.rbk". If the database is a link, they are beside the file to which
// it leads.
//
// Kept are the copies of the last seven days that have one, and the first copy of each of the last
// twelve months that have one. Because days and months without a copy do not count, neither a long
// absence nor a wrong clock makes the program remove more than one copy a day.
class DatabaseCopies
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopies)

public:
    explicit DatabaseCopies(const QString &databasePath);

    bool hasCopyOf(QDate day) const;

    // Makes the copy of a day and removes the copies that are no longer kept. Throws DatabaseError
    // if no copy can be made, or if it would leave less room than the database itself takes.
    //
    // Call it while this program has the write lock and has written nothing yet, so that the bytes
    // of the file are what was last committed and nobody changes them. They are read through the
    // descriptor that stays open as long as the connection does: when a program closes any
    // descriptor of a file, it loses all its POSIX locks on that file, and SQLite's locks are such
    // locks. QFile::copy() and std::filesystem::copy_file() open and close the file.
    void makeCopy(DatabaseFile &database, QDate day) const;

    // Returns the newest copy that the program can use. Reads each copy that it tries as a whole.
    std::optional<DatabaseCopy> newestSoundCopy(QDate today) const;

    // Returns whether there was a file when this object was made.
    bool hasDatabase() const { return m_state != FileState(); }

    // Returns the path that putBack() gives to a damaged database: "data damaged 2026-11-25.rbk",
    // with a number if that name is taken.
    std::filesystem::path pathForDamaged(QDate day) const;

    // Puts a copy in the place of the database, and keeps what is there, with its journal, as
    // pathForDamaged(). Does nothing if the file there is no longer the one that was there when
    // this object was made: another program may have put a copy back. Throws DatabaseError, and
    // then has changed nothing.
    void putBack(const DatabaseCopy &copy, QDate day) const;

private:
    // Identifies the contents of a file: zeros if the file does not exist.
    struct FileState {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        qint64 changedAt = 0; // in nanoseconds

        bool operator==(const FileState &) const = default;
    };

    static FileState stateOf(const std::filesystem::path &path);
    std::filesystem::path pathOfCopy(QDate day) const;
    QList<QDate> days() const;
    void removeOld() const;
    std::error_code replaceDatabase(const std::filesystem::path &copy,
                                    const std::filesystem::path &damaged) const;

    std::filesystem::path m_database;
    std::filesystem::path m_folder;
    FileState m_state;
};
