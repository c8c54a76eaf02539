#pragma once

#include "data/FieldValue.h"

#include <memory>
#include <string>
#include <vector>

class ChangeObserver;
class Database;

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

// Adds, changes and deletes rows of one table, and announces each change. Failures are thrown as
// DatabaseError.
class TableWriter
{
public:
    // `keyField` identifies a row: "rowid" or the field that SQLite uses for it. The values that
    // the functions below take are in the order of `fields`. The changes are not announced to
    // `author`.
    TableWriter(Database &database, std::string table, std::vector<std::string> fields,
                std::string keyField, const ChangeObserver *author = nullptr);
    ~TableWriter();

    // Returns the new row's key.
    qint64 insert(const FieldValues &values);

    // Both throw RowNotFound if there is no row with this key.
    void update(qint64 key, const FieldValues &values);
    void remove(qint64 key);

private:
    struct Prepared {
        std::vector<bool> fields; // whether the statement writes each of them
        const SQLite::Database *connection = nullptr;
        std::unique_ptr<SQLite::Statement> statement;
    };

    template <typename MakeText>
    SQLite::Statement &prepared(Prepared &kept, const FieldValues &values, MakeText makeText);
    std::string insertText(const FieldValues &values) const;
    std::string updateText(const FieldValues &values) const;
    void changeOneRow(SQLite::Statement &statement);

    Database &m_database;
    std::string m_table;
    std::size_t m_tableNumber;
    std::vector<std::string> m_fields;
    std::string m_keyField;
    const ChangeObserver *m_author;
    Prepared m_insert;
    Prepared m_update;
};
