#pragma once

#include "data/Database.h"
#include "data/SourceQuery.h"

#include <QCoreApplication>

// The rows of a record source as they were in the file when they were read, followed by those that
// have been appended since. What others write shows after a refresh(). Only read() reads, and it
// reads all rows; size(), cell() and the like never do. The set writes nothing itself: code that
// writes a row to the file then calls append(), replace() or erase().
class RowSet
{
    Q_DECLARE_TR_FUNCTIONS(RowSet)

public:
    // Checks the source and reads nothing. Throws DatabaseError if the database rejects the source.
    // The database must outlive the set.
    RowSet(Database &database, const QString &source);

    const SourceQuery &query() const { return m_query; }
    Database &database() const { return *m_database; }

    bool isRead() const { return m_isRead; }

    // Reads the rows unless they have been read. Rows that have been appended before stay last, so
    // that their numbers grow by the returned count. Throws and then leaves the set as it was: a
    // DatabaseError if the rows cannot be read, if another program has changed the columns while
    // rows have been appended or the caller `keepsColumns`, or if the file to which rows have been
    // appended was replaced.
    qsizetype read(bool keepsColumns = false);

    // Whether the source must be prepared again: another program has changed the schema, or another
    // file has been put in the place of the one that was open.
    bool isOutdated() const;

    // Throws DatabaseError if another program has changed the columns since the source was
    // prepared. To be called before a row is written, in the same transaction.
    void requireSameColumns() const;

    // Drops all rows; the next read() reads them.
    void discard();

    // Changes to `source` and drops the rows, unless they are those of `source` and are still as
    // the file has them. Returns whether they were kept. Throws DatabaseError if the database
    // rejects the source, and then leaves the set as it was.
    bool refresh(const QString &source);

    // How often the rows have been read. What was derived from them is valid as long as this number
    // stays and no row is written.
    int generation() const { return m_generation; }

    // How often the source has been prepared again. What was derived from its columns is valid as
    // long as this number stays.
    int preparation() const { return m_preparation; }

    // Before read(), the number of rows that have been appended.
    qsizetype size() const { return static_cast<qsizetype>(m_rows.size()); }

    // A text or a blob in the cell is valid until the rows are dropped.
    Cell cell(qsizetype row, int column) const
    {
        return RowStore::cell(m_rows[static_cast<std::size_t>(row)], column);
    }

    // Valid until the rows are dropped.
    RowStore::Row row(qsizetype row) const { return m_rows[static_cast<std::size_t>(row)]; }

    // The integer in a cell, or 0, which is never a key, if it holds something else.
    qint64 integer(qsizetype row, int column) const;

    int columnNumber(QLatin1StringView field) const { return m_query.columnNumber(field); }

    // For updatable sources: what identifies the row in its table.
    qint64 key(qsizetype row) const { return integer(row, m_query.keyColumn()); }

    // The row has been inserted into the table with this key, changed there, or deleted from it.
    // Columns without a value are null in an appended row and stay as they were in a replaced one.
    void append(const FieldValues &values, qint64 key);
    void replace(qsizetype row, const FieldValues &values);
    void erase(qsizetype row);

private:
    void prepare(const QString &source);
    [[noreturn]] static void failAsChanged();
    bool isCurrent() const;
    RowStore::Row store(const FieldValues &values, RowStore::Row old, qint64 key);

    Database *m_database;
    SourceQuery m_query;
    RowStore m_store;
    std::vector<RowStore::Row> m_rows;
    bool m_isRead = false;
    int m_generation = 0;
    int m_preparation = 0;

    // The state of the file when the rows were last known to be current.
    int m_dataVersion = 0;
    TableChanges m_changes{};

    // Whether another run of the query could put an appended row anywhere but last. A bare table is
    // read in the order of its keys, so there a row is in order if its key is the largest.
    bool m_isAppendedOutOfOrder = false;
    qint64 m_lastKey = 0;
};
