#pragma once

#include <QString>

#include <functional>
#include <memory>

class DatabaseFile;
struct sqlite3;

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

// Sets the options of SQLite that hold for the whole process. They must be set before SQLite is
// used for the first time, and later calls have no effect. Each session calls this; a program that
// uses SQLite before its first session calls it itself.
void configureSqlite();

// A connection to a recipe database that has been checked and accepted, and the file itself, which
// stays open until the connection is closed (see DatabaseFile).
class DatabaseSession
{
public:
    // Opens the file at `path` for reading and writing. Never creates it, nor changes one that it
    // rejects. Calls `configure` before anything is read. Throws DatabaseError if the file is
    // missing or damaged, was made by a newer version of the program or is not a recipe database.
    DatabaseSession(const QString &path, const std::function<void(sqlite3 *)> &configure);
    DatabaseSession(DatabaseSession &&) noexcept;
    DatabaseSession &operator=(DatabaseSession &&) noexcept;
    ~DatabaseSession();

    DatabaseFile &file() { return *m_file; }
    SQLite::Database &connection() { return *m_connection; }

    // The functions below throw SQLite::Exception.

    // A number that differs from the last one returned if another program has changed the file.
    int dataVersion();

    // SQLite's schema version. If it has changed, the schema is checked again, and DatabaseError
    // thrown, see SchemaCheck.h.
    int schemaCookie();

    // What schemaCookie() has returned last.
    int checkedSchemaCookie() const { return m_checkedSchema; }

    // Begin and end a transaction inside the one that is open. Their statements are kept, because
    // an import runs them for each file.
    void beginNested();
    void commitNested();
    void rollBackNested() noexcept; // does nothing if SQLite has rolled back by itself

    // Whether the content of the file agrees with itself. Reads the whole file.
    bool isSound();

private:
    void configure();
    void checkFile();
    void leaveWalMode();

    QString m_path;
    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<SQLite::Database> m_connection;
    std::unique_ptr<SQLite::Statement> m_dataVersion;
    std::unique_ptr<SQLite::Statement> m_schemaCookie;
    std::unique_ptr<SQLite::Statement> m_beginNested;
    std::unique_ptr<SQLite::Statement> m_commitNested;
    int m_checkedSchema = 0; // the cookie of the schema that has passed the check
};
