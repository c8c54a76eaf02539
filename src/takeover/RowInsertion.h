#pragma once

#include "data/FieldValue.h"
#include "data/Schema.h"

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

// Inserts rows into a table with one prepared statement. SQLite's C functions take texts as views,
// which the wrapper does not. Everything throws SQLite::Exception.
class RowInsertion
{
public:
    // The connection must outlive the object.
    RowInsertion(sqlite3 *connection, const Table &table);

    // Sets the value of a field, by its index in the table. A text is not copied: it must stay
    // until the row is inserted. A field that is not set again keeps its value for the next row.
    void bind(std::size_t field, const Cell &value);
    void insert();

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };

    void check(int code, int expected) const;

    sqlite3 *m_connection;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};
