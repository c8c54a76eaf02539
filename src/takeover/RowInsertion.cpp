#include "takeover/RowInsertion.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

namespace {

std::string insertText(const Table &table)
{
    std::string fields;
    std::string parameters;
    for (const Field &field : table.fields) {
        fields.append(fields.empty() ? "" : ", ").append(field.name);
        parameters.append(parameters.empty() ? "?" : ", ?");
    }
    return "INSERT INTO " + std::string(table.name) + " (" + fields + ") VALUES (" + parameters
        + ")";
}

struct Binder {
    sqlite3_stmt *statement;
    int parameter;

    int operator()(std::monostate) const { return sqlite3_bind_null(statement, parameter); }
    int operator()(qint64 number) const { return sqlite3_bind_int64(statement, parameter, number); }
    int operator()(double number) const
    {
        return sqlite3_bind_double(statement, parameter, number);
    }
    int operator()(std::string_view text) const
    {
        // A view of an empty text may have no address, which SQLite would store as null.
        return sqlite3_bind_text64(statement, parameter, text.empty() ? "" : text.data(),
                                   text.size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    int operator()(Blob blob) const
    {
        return sqlite3_bind_blob64(statement, parameter, blob.bytes.data(), blob.bytes.size(),
                                   SQLITE_STATIC);
    }
};

} // namespace

void RowInsertion::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

RowInsertion::RowInsertion(sqlite3 *connection, const Table &table)
    : m_connection(connection)
{
    const std::string text = insertText(table);
    sqlite3_stmt *statement = nullptr;
    const int code = sqlite3_prepare_v2(connection, text.c_str(), -1, &statement, nullptr);
    m_statement.reset(statement);
    check(code, SQLITE_OK);
}

void RowInsertion::bind(std::size_t field, const Cell &value)
{
    const Binder binder{m_statement.get(), static_cast<int>(field) + 1};
    check(std::visit(binder, value), SQLITE_OK);
}

void RowInsertion::insert()
{
    const int code = sqlite3_step(m_statement.get());
    check(code, SQLITE_DONE);
    sqlite3_reset(m_statement.get());
}

void RowInsertion::check(int code, int expected) const
{
    if (code != expected)
        throw SQLite::Exception(m_connection, code);
}
