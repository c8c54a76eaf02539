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

// Another tool can have made these indexes and statistics. With them, SQLite begins a join with the
// catalog unless it is asked for the order of the links.
inline const QByteArray joinsBeginWithCatalog =
    "CREATE INDEX a ON RecipeIngredients (IngredientID); CREATE INDEX b ON RecipeUtensils "
    "(UtensilID); ANALYZE; DELETE FROM sqlite_stat1; INSERT INTO sqlite_stat1 VALUES "
    "('RecipeIngredients', 'a', '9000 2'), ('RecipeUtensils', 'b', '9000 2'), "
    "('RecipeIngredients', 'RecipeIngredientsOfRecipe', '9000 9000'), "
    "('RecipeUtensils', 'RecipeUtensilsOfRecipe', '9000 9000'), "
    "('Ingredients', NULL, '2'), ('Utensils', NULL, '2');";

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

// Returns what a window says about a failure that SQLite reports with this result code.
inline QString sqliteText(const TestDatabase &file, int code, const QString &message = {},
                          DatabaseError::Operation operation = DatabaseError::Operation::Reading)
{
    return failureOf([&] {
        std::rethrow_exception(DatabaseError::fromSqlite(file.path(), code, message, operation));
    });
}

// Returns what a window says while another program holds a lock on the file.
inline QString lockedText(const TestDatabase &file, DatabaseError::Operation operation)
{
    return sqliteText(file, SQLITE_BUSY, {}, operation);
}
