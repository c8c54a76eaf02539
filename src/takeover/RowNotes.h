#pragma once

#include "data/Schema.h"
#include "oldfiles/ValueDecoder.h"
#include "takeover/TakeoverNotes.h"

#include <QString>

#include <span>

namespace SQLite {
class Database;
}

// The notes about single rows of a table. A row is named as the user knows it: a catalog's by its
// name, a line of a recipe by the title of the recipe.
class RowNotes
{
public:
    // The notes and the new database must outlive the object. The recipes must be in the database
    // before the lines of recipes are noted.
    RowNotes(TakeoverNotes &notes, SQLite::Database &database, const Table &table);

    // A row of the old file.
    struct Row {
        qint64 number; // from 0
        std::span<const oldfiles::Value> values;
    };

    // A field is null, because it cannot hold the number.
    void numberDoesNotFit(const Row &row, std::size_t field);

    // A row of a catalog has got a new key. If no earlier row has its old key, the lines of recipes
    // refer to the new one.
    void keyReplaced(const Row &row, bool isTakenByEarlierRow, qint32 newKey);

private:
    QString label(const Row &row) const;
    QString recipeOf(const Row &row) const;
    QString keySentence(const Row &row, bool isTakenByEarlierRow, qint32 newKey) const;

    TakeoverNotes &m_notes;
    SQLite::Database &m_database;
    const Table &m_table;
    const QString m_name;
};

// Returns the name of a table or a field.
QString displayName(std::string_view name);
