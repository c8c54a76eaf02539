#pragma once

#include "data/FieldValue.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class Database;

namespace SQLite {
class Statement;
}

// Adds, changes and deletes rows of one table. Failures are thrown as DatabaseError.
class TableWriter
{
public:
    // A value for each of the fields, or nothing for a field that is not written.
    using Values = std::vector<std::optional<FieldValue>>;

    // Rows are known by the field `keyField`, which may be the engine's own "rowid".
    TableWriter(Database &database, std::string table, std::vector<std::string> fields,
                std::string keyField);
    ~TableWriter();

    // Returns the new row's key.
    qint64 insert(const Values &values);

    // Both throw where there is no such row (any more).
    void update(qint64 key, const Values &values);
    void remove(qint64 key);

private:
    struct Prepared {
        std::vector<bool> fields; // those that it writes
        std::unique_ptr<SQLite::Statement> statement;
    };

    template <typename MakeText>
    SQLite::Statement &prepared(Prepared &kept, const Values &values, MakeText makeText);
    std::string insertText(const Values &values) const;
    std::string updateText(const Values &values) const;
    void changeOneRow(SQLite::Statement &statement);

    Database &m_database;
    std::string m_table;
    std::vector<std::string> m_fields;
    std::string m_keyField;
    Prepared m_insert;
    Prepared m_update;
};
