#include "data/SourceQuery.h"

#include "data/AsciiText.h"
#include "data/Database.h"
#include "data/DatabaseError.h"

#include <QCoreApplication>

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <algorithm>

namespace {

bool isWordCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

std::vector<std::string_view> words(std::string_view text)
{
    std::vector<std::string_view> result;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        while (end < text.size() && isWordCharacter(text[end]))
            ++end;
        if (end > i)
            result.push_back(text.substr(i, end - i));
        i = std::max(end, i + 1);
    }
    return result;
}

// The table behind INNER JOIN, of a source without an order of its own.
std::string_view joinedTable(const std::vector<std::string_view> &words)
{
    std::string_view table;
    for (std::size_t i = 0; i + 2 < words.size(); ++i) {
        if (equalAscii(words[i], "ORDER"))
            return {};
        if (equalAscii(words[i], "INNER") && equalAscii(words[i + 1], "JOIN"))
            table = words[i + 2];
    }
    return table;
}

// A bare name stands for the whole table in storage order. The joins get the order in which their
// link rows were stored, which the engine would otherwise give up where another index serves it.
std::string statementText(const std::string &source, const std::vector<std::string_view> &words)
{
    if (words.size() == 1)
        return "SELECT *, rowid FROM \"" + std::string(words.front()) + "\" ORDER BY rowid";
    const std::string_view linkTable = joinedTable(words);
    if (!linkTable.empty())
        return source + " ORDER BY " + std::string(linkTable) + ".rowid";
    return source;
}

FieldType typeOf(int table, const char *field)
{
    for (const Field &known : schemaTables()[static_cast<std::size_t>(table)].fields) {
        if (equalAscii(known.name, field))
            return known.type;
    }
    return FieldType::Text;
}

// Through the value as a whole: each question to the statement itself would look it up again. Such
// a value is safe to ask as long as no other thread uses the connection.
Cell cellOf(sqlite3_value *value)
{
    const auto bytes = [value](const void *data) {
        return std::string_view(static_cast<const char *>(data),
                                static_cast<std::size_t>(sqlite3_value_bytes(value)));
    };
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return {Cell::Type::Integer, sqlite3_value_int64(value), 0, {}};
    case SQLITE_FLOAT:
        return {Cell::Type::Real, 0, sqlite3_value_double(value), {}};
    case SQLITE_TEXT:
        return {Cell::Type::Text, 0, 0, bytes(sqlite3_value_text(value))};
    case SQLITE_BLOB:
        return {Cell::Type::Blob, 0, 0, bytes(sqlite3_value_blob(value))};
    default:
        return {};
    }
}

} // namespace

void SourceQuery::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SourceQuery::SourceQuery(Database &database, const QString &source)
    : m_database(&database)
    , m_source(source)
{
    const std::string text = source.toStdString();
    const std::vector<std::string_view> all = words(text);
    m_bareTable = all.size() == 1;
    for (const std::string_view word : all) {
        const int table = ::tableNumber(word);
        if (table >= 0)
            m_reads[static_cast<std::size_t>(table)] = true;
    }
    prepare(statementText(text, all));
    describeColumns();
}

void SourceQuery::prepare(const std::string &text)
{
    sqlite3 *handle = m_database->connection().getHandle();
    sqlite3_stmt *statement = nullptr;
    const int result = sqlite3_prepare_v2(handle, text.c_str(), static_cast<int>(text.size()),
                                          &statement, nullptr);
    m_statement.reset(statement);
    if (result != SQLITE_OK)
        m_database->fail(sqlite3_extended_errcode(handle), sqlite3_errmsg(handle));
    if (statement == nullptr || sqlite3_stmt_readonly(statement) == 0)
        throw DatabaseError(
            QCoreApplication::translate("SourceQuery", "Not a record source: %1").arg(m_source));
}

void SourceQuery::describeColumns()
{
    const int count = sqlite3_column_count(m_statement.get()) - (m_bareTable ? 1 : 0);
    bool oneTable = true;
    for (int i = 0; i < count; ++i) {
        const char *tableName = sqlite3_column_table_name(m_statement.get(), i);
        const char *field = sqlite3_column_origin_name(m_statement.get(), i);
        const int table = tableName == nullptr ? -1 : ::tableNumber(tableName);
        oneTable = oneTable && table >= 0 && (i == 0 || table == m_table);
        m_table = table;
        m_columns.push_back({sqlite3_column_name(m_statement.get(), i),
                             table >= 0 ? typeOf(table, field) : FieldType::Number});
    }
    if (!oneTable || m_columns.empty())
        return;
    if (m_bareTable)
        m_keyColumn = count;
    else if (table().hasKey)
        m_keyColumn = findColumn(table().fields.front().name);
}

// -1 where there is none.
int SourceQuery::findColumn(std::string_view field) const
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (equalAscii(m_columns[i].name, field))
            return static_cast<int>(i);
    }
    return -1;
}

int SourceQuery::columnNumber(std::string_view field) const
{
    if (const int number = findColumn(field); number >= 0)
        return number;
    throw DatabaseError(
        QCoreApplication::translate("SourceQuery", "There is no field %1 in: %2")
            .arg(QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size())), m_source));
}

std::vector<RowStore::Row> SourceQuery::rows(RowStore &store) const
{
    sqlite3_stmt *statement = m_statement.get();
    const int columns = sqlite3_column_count(statement);
    std::vector<RowStore::Row> result;
    int status = sqlite3_step(statement);
    while (status == SQLITE_ROW) {
        store.beginRow();
        for (int i = 0; i < columns; ++i)
            store.add(cellOf(sqlite3_column_value(statement, i)));
        result.push_back(store.endRow());
        status = sqlite3_step(statement);
    }
    sqlite3 *handle = sqlite3_db_handle(statement);
    if (status != SQLITE_DONE) {
        const int code = sqlite3_extended_errcode(handle);
        const std::string message = sqlite3_errmsg(handle);
        sqlite3_reset(statement);
        m_database->fail(code, message.c_str());
    }
    sqlite3_reset(statement);
    return result;
}

bool SourceQuery::isOutdated() const
{
    // The engine then prepares the statement anew by itself.
    return sqlite3_stmt_status(m_statement.get(), SQLITE_STMTSTATUS_REPREPARE, 0) != 0;
}
