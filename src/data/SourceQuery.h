#pragma once

#include "data/FieldValue.h"
#include "data/RowStore.h"
#include "data/Schema.h"

#include <QString>

#include <array>
#include <memory>
#include <string>
#include <vector>

class Database;
struct sqlite3_stmt;

// A record source, checked against the database: what it yields and what may be written through it.
class SourceQuery
{
public:
    struct Column {
        std::string name;
        FieldType type;
    };

    // Throws DatabaseError where the database does not take the source. Reads no row.
    SourceQuery(Database &database, const QString &source);

    const QString &source() const { return m_source; }

    const std::vector<Column> &columns() const { return m_columns; }

    // The column's number; throws DatabaseError naming field and source where there is none.
    int columnNumber(std::string_view field) const;

    // Whether rows are added, changed and deleted through it, and in which table.
    bool isUpdatable() const { return m_keyColumn >= 0; }
    const Table &table() const { return schemaTables()[static_cast<std::size_t>(m_table)]; }
    int tableNumber() const { return m_table; }

    // The cell that holds the row's key in its table; behind the columns for a bare table.
    int keyColumn() const { return m_keyColumn; }

    bool isBareTable() const { return m_bareTable; }

    // The tables that the rows come from.
    bool reads(std::size_t table) const { return m_reads[table]; }

    // Runs it to the end and puts its rows into the store, one behind the other.
    std::vector<RowStore::Row> rows(RowStore &store) const;

    // Whether, when the rows were taken, the tables were others than those it was checked against.
    bool isOutdated() const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };

    void prepare(const std::string &text);
    void describeColumns();
    int findColumn(std::string_view field) const;

    Database *m_database;
    QString m_source;
    bool m_bareTable = false;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
    std::vector<Column> m_columns;
    std::array<bool, tableCount> m_reads{};
    int m_table = -1;
    int m_keyColumn = -1;
};
