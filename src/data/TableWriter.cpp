#include "data/TableWriter.h"

#include "data/Database.h"
#include "data/DatabaseError.h"
#include "data/Schema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

namespace {

void bindValue(SQLite::Statement &statement, int index, const FieldValue &value)
{
    if (const auto *integer = std::get_if<qint64>(&value))
        statement.bind(index, static_cast<int64_t>(*integer));
    else if (const auto *number = std::get_if<double>(&value))
        statement.bind(index, *number);
    else if (const auto *text = std::get_if<std::string>(&value))
        statement.bindNoCopy(index, *text);
    else
        statement.bind(index);
}

// Skips the columns that have no value and returns the index of the next parameter.
int bindValues(SQLite::Statement &statement, const FieldValues &values)
{
    int index = 1;
    for (const std::optional<FieldValue> &value : values) {
        if (value)
            bindValue(statement, index++, *value);
    }
    return index;
}

} // namespace

TableWriter::TableWriter(Database &database, std::string table, std::vector<std::string> fields,
                         std::string keyField, const ChangeObserver *author)
    : m_database(database)
    , m_table(std::move(table))
    , m_tableNumber(static_cast<std::size_t>(tableNumber(m_table)))
    , m_fields(std::move(fields))
    , m_keyField(std::move(keyField))
    , m_author(author)
{
}

TableWriter::~TableWriter() = default;

template <typename MakeText>
SQLite::Statement &TableWriter::prepared(Prepared &kept, const FieldValues &values,
                                         MakeText makeText)
{
    const bool fits = std::equal(
        values.begin(), values.end(), kept.fields.begin(), kept.fields.end(),
        [](const auto &value, bool isWritten) { return value.has_value() == isWritten; });
    SQLite::Database &connection = m_database.connection();
    if (!kept.statement || !fits || kept.connection != &connection) {
        kept.statement = std::make_unique<SQLite::Statement>(connection, makeText());
        kept.connection = &connection;
        kept.fields.clear();
        for (const auto &value : values)
            kept.fields.push_back(value.has_value());
    }
    return *kept.statement;
}

std::string TableWriter::insertText(const FieldValues &values) const
{
    std::string fields;
    std::string parameters;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!values[i])
            continue;
        fields += (fields.empty() ? "" : ", ") + m_fields[i];
        parameters += parameters.empty() ? "?" : ", ?";
    }
    const std::string into = "INSERT INTO " + m_table;
    return fields.empty() ? into + " DEFAULT VALUES"
                          : into + " (" + fields + ") VALUES (" + parameters + ")";
}

std::string TableWriter::updateText(const FieldValues &values) const
{
    std::string assignments;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i])
            assignments += (assignments.empty() ? "" : ", ") + m_fields[i] + " = ?";
    }
    return "UPDATE " + m_table + " SET " + assignments + " WHERE " + m_keyField + " = ?";
}

qint64 TableWriter::insert(const FieldValues &values)
{
    return m_database.translateSqliteErrors([&] {
        SQLite::Statement &statement =
            prepared(m_insert, values, [&] { return insertText(values); });
        bindValues(statement, values);
        m_database.announce({.table = m_tableNumber, .isInsertion = true}, m_author);
        changeOneRow(statement);
        return static_cast<qint64>(m_database.connection().getLastInsertRowid());
    });
}

void TableWriter::update(qint64 key, const FieldValues &values)
{
    m_database.translateSqliteErrors([&] {
        SQLite::Statement &statement =
            prepared(m_update, values, [&] { return updateText(values); });
        statement.bind(bindValues(statement, values), static_cast<int64_t>(key));
        m_database.announce({.table = m_tableNumber, .rowid = key}, m_author);
        changeOneRow(statement);
    });
}

void TableWriter::remove(qint64 key)
{
    m_database.translateSqliteErrors([&] {
        SQLite::Statement statement(m_database.connection(),
                                    "DELETE FROM " + m_table + " WHERE " + m_keyField + " = ?");
        statement.bind(1, static_cast<int64_t>(key));
        m_database.announce({.table = m_tableNumber, .rowid = key}, m_author);
        changeOneRow(statement);
    });
}

void TableWriter::changeOneRow(SQLite::Statement &statement)
{
    int changed = 0;
    try {
        changed = statement.exec();
    } catch (const SQLite::Exception &) {
        statement.tryReset();
        throw;
    }
    statement.reset();
    if (changed == 0)
        throw RowNotFound();
}
