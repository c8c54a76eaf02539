#pragma once

#include <SQLiteCpp/Database.h>

#include <QtGlobal>

#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

// SQLite as any program can use it: the baseline of most benchmarks.

// Opens a connection with SQLite's defaults, except for the settings of the program that affect
// results and costs: the collation NOCASE, the size of the page cache, and how commits are synced.
SQLite::Database plainConnection(const std::string &path);

// A prepared statement that is run through SQLite's C interface alone. Throws std::runtime_error if
// SQLite reports an error.
class PlainStatement
{
public:
    PlainStatement(sqlite3 *connection, const std::string &text);

    // Parameters are numbered from 1. A text is not copied: it must live until the statement has
    // run.
    void bind(int parameter, const std::string &text);
    void bind(int parameter, qint64 number);

    // Runs the statement to its end, fetches every column of every row, and resets the statement.
    // Returns the number of rows.
    qsizetype run();

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };

    void check(int code, int expected) const;

    sqlite3 *m_connection;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};
