#pragma once

#include "data/DatabaseError.h"
#include "data/Schema.h"

#include <QString>
#include <QTemporaryDir>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

// An empty database in a temporary folder, and what another program sees in it.
class TestDatabase
{
public:
    TestDatabase()
    {
        SQLite::Database(file(), readWrite | SQLite::OPEN_CREATE).exec(creationScript());
    }

    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(QStringLiteral("data.rbk")); }

    // Opens the connection of another program, whose NOCASE collation folds only ASCII.
    SQLite::Database other() const { return {file(), readWrite}; }

    void write(const QString &statements) const { other().exec(statements.toStdString()); }

    // Returns the rows of a query, such as "1|Salt, 2|null".
    QString stored(const QByteArray &query) const
    {
        const SQLite::Database database = other();
        SQLite::Statement statement(database, query.toStdString());
        QStringList rows;
        while (statement.executeStep()) {
            QStringList cells;
            for (int i = 0; i < statement.getColumnCount(); ++i) {
                const SQLite::Column cell = statement.getColumn(i);
                cells += QString::fromStdString(cell.isNull() ? "null" : cell.getString());
            }
            rows += cells.join(u'|');
        }
        return rows.join(QStringLiteral(", "));
    }

private:
    static inline const int readWrite = SQLite::OPEN_READWRITE;

    std::string file() const { return path().toStdString(); }

    QTemporaryDir m_folder;
};

// Returns the text of the DatabaseError that the action throws, or a null text if it throws none.
template <typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const DatabaseError &error) {
        return error.text();
    }
    return {};
}

// Returns what a window says while another program holds a lock on the file.
inline QString lockedText(const TestDatabase &file, DatabaseError::Operation operation)
{
    return failureOf([&] {
        std::rethrow_exception(DatabaseError::fromSqlite(file.path(), SQLITE_BUSY, {}, operation));
    });
}
