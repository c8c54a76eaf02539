#include "data/SourceQuery.h"

#include "data/Database.h"
#include "data/DatabaseError.h"

#include <QRegularExpression>
#include <QScopeGuard>

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

std::string selectOfTable(std::string_view name)
{
    return "SELECT *, rowid FROM \"" + std::string(name) + "\" ORDER BY rowid";
}

// Returns null for a column that another tool has added.
const Field *knownField(int table, std::string_view name)
{
    const std::span<const Field> fields = schemaTables()[static_cast<std::size_t>(table)].fields;
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const Field &field) {
        return isSameName(field.name, name);
    });
    return found == fields.end() ? nullptr : &*found;
}

FieldType typeOf(int table, std::string_view field)
{
    const Field *known = knownField(table, field);
    return known == nullptr ? FieldType::Text : known->type;
}

bool isLongText(int table, std::string_view field)
{
    const Field *known = knownField(table, field);
    return known != nullptr && known->isLongText;
}

bool hasLongText(const Table &table)
{
    return std::any_of(table.fields.begin(), table.fields.end(),
                       [](const Field &field) { return field.isLongText; });
}

std::string quotedName(std::string_view name)
{
    std::string text = "\"";
    for (const char c : name)
        text.append(c == '"' ? 2 : 1, c);
    return text + '"';
}

std::string collationOf(Database &database, const Table &table, const std::string &field)
{
    const char *collation = nullptr;
    sqlite3_table_column_metadata(database.connection().getHandle(), "main",
                                  std::string(table.name).c_str(), field.c_str(), nullptr,
                                  &collation, nullptr, nullptr, nullptr);
    return collation == nullptr ? std::string() : collation;
}

// sqlite3_value_*() answer from the value that was looked up once; each sqlite3_column_*() call
// would look it up again. An unprotected value is safe because no other thread uses the connection.
Cell cellOf(sqlite3_value *value)
{
    const auto bytes = [value](const void *data) {
        return std::string_view(static_cast<const char *>(data),
                                static_cast<std::size_t>(sqlite3_value_bytes(value)));
    };
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return qint64{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
        return bytes(sqlite3_value_text(value));
    case SQLITE_BLOB:
        return Blob{bytes(sqlite3_value_blob(value))};
    default:
        return {};
    }
}

} // namespace

QString inLinkOrder(const QString &join, QLatin1StringView linkTable)
{
    return join + " ORDER BY "_L1 + linkTable + ".rowid"_L1;
}

void SourceQuery::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SourceQuery::SourceQuery(Database &database, const QString &source)
    : m_database(&database)
    , m_source(source)
    , m_schemaCookie(database.schemaCookie())
{
    const std::string text = source.toStdString();
    const std::vector<std::string_view> all = words(text);
    m_bareTable = all.size() == 1;
    m_reads = namedTables(text);
    m_statement = prepared(m_bareTable ? selectOfTable(all.front()) : text);
    describeColumns();
    m_indexedColumn = findIndexedColumn();
    if (!isUpdatable())
        return;
    m_order = m_bareTable ? RowOrder({}, m_keyColumn) : orderInText();
    if (m_order)
        prepareOwnStatements();
}

SourceQuery::Statement SourceQuery::prepared(const std::string &text) const
{
    sqlite3 *handle = m_database->connection().getHandle();
    sqlite3_stmt *prepared = nullptr;
    const int result =
        sqlite3_prepare_v2(handle, text.c_str(), static_cast<int>(text.size()), &prepared, nullptr);
    Statement statement(prepared);
    if (result != SQLITE_OK)
        m_database->fail(sqlite3_extended_errcode(handle), sqlite3_errmsg(handle));
    if (prepared == nullptr || sqlite3_stmt_readonly(prepared) == 0)
        throw DatabaseError(tr("Not a record source: %1").arg(m_source));
    return statement;
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

int SourceQuery::findIndexedColumn() const
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const auto number = static_cast<int>(i);
        const char *tableName = sqlite3_column_table_name(m_statement.get(), number);
        const int table = tableName == nullptr ? -1 : ::tableNumber(tableName);
        if (table < 0)
            continue;
        const Table &known = schemaTables()[static_cast<std::size_t>(table)];
        const char *field = sqlite3_column_origin_name(m_statement.get(), number);
        // Other tables with a key are small: reading them once costs less than some searches.
        const bool isSearched = !known.hasKey || m_columns.size() == 1 || hasLongText(known);
        if (isSameName(field, known.fields.front().name) && isSearched
            && (!known.hasKey || isUpdatable()))
            return number;
    }
    return -1;
}

// Returns -1 if there is no such column.
int SourceQuery::findColumn(std::string_view field) const
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (isSameName(m_columns[i].name, field))
            return static_cast<int>(i);
    }
    return -1;
}

int SourceQuery::columnNumber(QLatin1StringView field) const
{
    const int number = findColumn({field.data(), static_cast<std::size_t>(field.size())});
    if (number < 0)
        throw DatabaseError(tr("There is no field %1 in: %2").arg(field, m_source));
    return number;
}

// Returns nothing if the text says more than a table and some of its columns.
std::optional<RowOrder> SourceQuery::orderInText() const
{
    static const QRegularExpression form(
        uR"(^\s*SELECT\s+\*\s+FROM\s+(\w+)\s+ORDER\s+BY\s+(\w+(\s*,\s*\w+)*)\s*$)"_s,
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(m_source);
    if (!match.hasMatch() || ::tableNumber(match.captured(1).toStdString()) != m_table)
        return {};
    std::vector<RowOrder::Column> columns;
    const std::string fields = match.captured(2).toStdString();
    for (const std::string_view field : words(fields)) {
        const int number = findColumn(field);
        if (number < 0 || isLongText(m_table, field))
            return {};
        const std::string collation = collationOf(*m_database, table(), std::string(field));
        const bool foldsCase = isSameName(collation, "NOCASE");
        if (!foldsCase && !isSameName(collation, "BINARY"))
            return {};
        columns.push_back({number, foldsCase});
    }
    return RowOrder(std::move(columns), m_keyColumn);
}

// Rows are sorted here, which is faster than in the database, and are read without the long texts,
// which would take most of the time and nearly all of the memory.
void SourceQuery::prepareOwnStatements()
{
    const std::string from = " FROM " + quotedName(table().name);
    const std::string ofKey = " WHERE rowid = ?";
    std::string columns;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const std::string name = quotedName(m_columns[i].name);
        columns += columns.empty() ? "" : ", ";
        if (!isLongText(m_table, m_columns[i].name)) {
            columns += name;
            continue;
        }
        columns += "NULL"; // so that the columns keep their numbers
        m_longTextColumn = static_cast<int>(i);
        const std::string selectText = "SELECT " + name;
        m_longTexts = prepared(std::string(selectText).append(", rowid").append(from));
        m_longTextOfKey = prepared(std::string(selectText).append(from).append(ofKey));
    }
    if (m_bareTable)
        columns += ", rowid";
    const std::string select = "SELECT " + columns + from;
    m_statement = prepared(m_bareTable ? select + " ORDER BY rowid" : select);
    m_rowOfKey = prepared(select + ofKey);
}

std::vector<RowStore::Row> SourceQuery::rows(RowStore &store) const
{
    std::vector<RowStore::Row> rows = run(m_statement, store);
    if (m_order && !m_bareTable)
        m_order->sort(rows);
    return rows;
}

RowStore::Row SourceQuery::row(qint64 key, RowStore &store) const
{
    return runFor(key, m_rowOfKey, store);
}

RowStore::Row SourceQuery::longText(qint64 key, RowStore &store) const
{
    return runFor(key, m_longTextOfKey, store);
}

std::vector<RowStore::Row> SourceQuery::longTexts(RowStore &store) const
{
    return run(m_longTexts, store);
}

RowStore::Row SourceQuery::runFor(qint64 key, const Statement &statement, RowStore &store) const
{
    sqlite3_bind_int64(statement.get(), 1, key);
    const std::vector<RowStore::Row> rows = run(statement, store);
    return rows.empty() ? nullptr : rows.front();
}

// SQLite applies the condition inside the query, and thus uses the index.
std::vector<RowStore::Row> SourceQuery::rowsWithKey(qint64 key, RowStore &store) const
{
    if (!m_statementByKey) {
        const Column &column = m_columns[static_cast<std::size_t>(m_indexedColumn)];
        m_statementByKey = prepared(std::string("SELECT * FROM (") + sqlite3_sql(m_statement.get())
                                    + ") WHERE " + quotedName(column.name) + " = ?1");
    }
    sqlite3_bind_int64(m_statementByKey.get(), 1, key);
    return run(m_statementByKey, store);
}

std::vector<RowStore::Row> SourceQuery::run(const Statement &prepared, RowStore &store) const
{
    sqlite3_stmt *statement = prepared.get();
    const int columns = sqlite3_column_count(statement);
    // Also if memory runs out: a statement that is not reset keeps the file locked.
    const auto reset = qScopeGuard([statement] { sqlite3_reset(statement); });
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
    if (status != SQLITE_DONE)
        m_database->fail(sqlite3_extended_errcode(handle), sqlite3_errmsg(handle));
    return result;
}

bool SourceQuery::isOfClosedFile() const
{
    return sqlite3_db_handle(m_statement.get()) != m_database->connection().getHandle();
}
