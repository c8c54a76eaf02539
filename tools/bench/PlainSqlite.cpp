#include "PlainSqlite.h"

#include "data/TextComparison.h"

#include <sqlite3.h>

#include <stdexcept>

namespace {

int collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return compareTexts({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                        {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

// The least that every reader does: it asks for the type, the value and the length of a text.
void fetch(sqlite3_stmt *statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        sqlite3_column_int64(statement, column);
        break;
    case SQLITE_FLOAT:
        sqlite3_column_double(statement, column);
        break;
    case SQLITE_NULL:
        break;
    default:
        sqlite3_column_text(statement, column);
        sqlite3_column_bytes(statement, column);
    }
}

} // namespace

SQLite::Database plainConnection(const std::string &path)
{
    SQLite::Database database(path, SQLite::OPEN_READWRITE);
    sqlite3_create_collation_v2(database.getHandle(), "NOCASE", SQLITE_UTF8, nullptr, collate,
                                nullptr);
    database.exec("PRAGMA cache_size = -16000; PRAGMA synchronous = EXTRA");
    return database;
}

void PlainStatement::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

PlainStatement::PlainStatement(sqlite3 *connection, const std::string &text)
    : m_connection(connection)
{
    sqlite3_stmt *statement = nullptr;
    const int code = sqlite3_prepare_v2(connection, text.c_str(), -1, &statement, nullptr);
    m_statement.reset(statement);
    check(code, SQLITE_OK);
}

void PlainStatement::check(int code, int expected) const
{
    if (code != expected)
        throw std::runtime_error(sqlite3_errmsg(m_connection));
}

void PlainStatement::bind(int parameter, const std::string &text)
{
    check(sqlite3_bind_text(m_statement.get(), parameter, text.data(),
                            static_cast<int>(text.size()), SQLITE_STATIC),
          SQLITE_OK);
}

void PlainStatement::bind(int parameter, qint64 number)
{
    check(sqlite3_bind_int64(m_statement.get(), parameter, number), SQLITE_OK);
}

qsizetype PlainStatement::run()
{
    sqlite3_stmt *statement = m_statement.get();
    const int columns = sqlite3_column_count(statement);
    qsizetype rows = 0;
    int status = sqlite3_step(statement);
    for (; status == SQLITE_ROW; status = sqlite3_step(statement)) {
        for (int i = 0; i < columns; ++i)
            fetch(statement, i);
        ++rows;
    }
    check(status, SQLITE_DONE);
    sqlite3_reset(statement);
    return rows;
}
