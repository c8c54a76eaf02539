#pragma once

#include "data/FieldValue.h"
#include "data/RowOrder.h"
#include "data/RowStore.h"
#include "data/Schema.h"

#include <QCoreApplication>
#include <QString>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Database;
struct sqlite3_stmt;

// The text of a SELECT that joins a link table with a catalog, extended by an ORDER BY: the rows
// come in the order in which those of the link table were stored, which is the order of a recipe's
// lines. SQLite keeps that order by itself only as long as it drives the join from the link table.
// An index that another tool has added to the file can make it begin with the catalog.
QString inLinkOrder(const QString &join, QLatin1StringView linkTable);

// A record source, prepared by the database: which columns it has and what can be written through
// it. Its text is one SELECT statement or the bare name of a table, which means all rows of the
// table in the order in which they were stored.
//
// If the text is a bare table or "SELECT * FROM table ORDER BY column, column ...", single rows can
// be read and put in order, too. The rows of such a source do not hold the long texts of the table:
// their cells are null, and longText() reads one.
class SourceQuery
{
    Q_DECLARE_TR_FUNCTIONS(SourceQuery)

public:
    struct Column {
        std::string name;
        FieldType type;

        bool operator==(const Column &) const = default;
    };

    // Reads no row. Throws DatabaseError if the database rejects the source. The database must
    // outlive the query.
    SourceQuery(Database &database, const QString &source);

    const QString &source() const { return m_source; }

    const std::vector<Column> &columns() const { return m_columns; }

    // Of a row: one for each column, and for a bare table one more, see keyColumn().
    int cellCount() const { return static_cast<int>(m_columns.size()) + (m_bareTable ? 1 : 0); }

    // Throws DatabaseError with the names of field and source if there is no such column.
    int columnNumber(QLatin1StringView field) const;

    // Whether rows can be added, changed and deleted, and in which table.
    bool isUpdatable() const { return m_keyColumn >= 0; }
    const Table &table() const { return schemaTables()[static_cast<std::size_t>(m_table)]; }
    int tableNumber() const { return m_table; }

    // The number of the cell that identifies a row in its table. For a bare table it follows the
    // cells of the columns and holds the rowid.
    int keyColumn() const { return m_keyColumn; }

    bool isBareTable() const { return m_bareTable; }

    // The number of the column in which rowsWithKey() searches, or -1: the RecipeID of a link
    // table, which has an index, or the key of a table if it is the only column or the table has
    // long texts.
    int indexedColumn() const { return m_indexedColumn; }

    // Whether the rows come from this table.
    bool reads(std::size_t table) const { return m_reads[table]; }

    // The order of the rows, or null if only the database can tell it.
    const RowOrder *order() const { return m_order ? &*m_order : nullptr; }

    // The number of the column whose cells are not stored with the rows, or -1.
    int longTextColumn() const { return m_longTextColumn; }

    // The functions below read and store rows. They throw DatabaseError.

    // All rows, in their order.
    std::vector<RowStore::Row> rows(RowStore &store) const;

    // The rows that have this key in the indexed column, in the same order. In a file that lacks
    // the index, which another tool can have removed, the time grows with the table.
    std::vector<RowStore::Row> rowsWithKey(qint64 key, RowStore &store) const;
    // The row with this key as it is now, or null if there is no such row. Needs an order().
    RowStore::Row row(qint64 key, RowStore &store) const;

    // A row whose cell 0 is the long text of the row with this key, as it is now, or null if there
    // is no such row. longTexts() has the texts of all rows, with their keys in cell 1.
    RowStore::Row longText(qint64 key, RowStore &store) const;
    std::vector<RowStore::Row> longTexts(RowStore &store) const;

    // Database::schemaCookie() when the source was prepared. If that has changed, the columns may
    // be wrong.
    int schemaCookie() const { return m_schemaCookie; }

    // Whether the source was prepared before Database::reopen() and must be prepared again.
    bool isOfClosedFile() const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };

    using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

    Statement prepared(const std::string &text) const;
    void describeColumns();
    int findIndexedColumn() const;
    std::optional<RowOrder> orderInText() const;
    void prepareOwnStatements();
    std::vector<RowStore::Row> run(const Statement &prepared, RowStore &store) const;
    RowStore::Row runFor(qint64 key, const Statement &statement, RowStore &store) const;
    int findColumn(std::string_view field) const;

    Database *m_database;
    QString m_source;
    int m_schemaCookie;
    bool m_bareTable = false;
    Statement m_statement;
    Statement m_rowOfKey;
    Statement m_longTexts;
    Statement m_longTextOfKey;
    mutable Statement m_statementByKey; // prepared when it is needed
    std::vector<Column> m_columns;
    std::array<bool, tableCount> m_reads{};
    int m_table = -1;
    int m_keyColumn = -1;
    int m_indexedColumn = -1;
    int m_longTextColumn = -1;
    std::optional<RowOrder> m_order;
};
