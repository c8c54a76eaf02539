#pragma once

#include "data/DatabaseError.h"
#include "data/Schema.h"

#include <QString>
#include <QTemporaryDir>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

// An empty recipe file in a folder of its own, as another program sees it.
class RecipeFile
{
public:
    RecipeFile()
    {
        SQLite::Database(file(), readWrite | SQLite::OPEN_CREATE).exec(creationScript());
    }

    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(QStringLiteral("data.rbk")); }

    // The other program's connection: it knows nothing of ours and folds ASCII alone.
    SQLite::Database other() const { return {file(), readWrite}; }

    void write(const QString &statements) const { other().exec(statements.toStdString()); }

    // The rows of a query: "1|Salt, 2|null".
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

// The text of the DatabaseError that the action ends in, or the null text.
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
