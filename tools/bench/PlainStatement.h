#pragma once

#include <QtGlobal>

#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

// A statement run through SQLite's own interface and nothing else: the yardstick. Throws
// std::runtime_error where SQLite reports an error.
class PlainStatement
{
public:
    PlainStatement(sqlite3 *connection, const std::string &text);

    // Parameters count from 1. A text must stay where it is until the statement has run.
    void bind(int parameter, const std::string &text);
    void bind(int parameter, qint64 number);

    // Runs it to the end, fetching every column of every row, and makes it ready for the next run.
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
