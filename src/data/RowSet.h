#pragma once

#include "data/Database.h"
#include "data/SourceQuery.h"

#include <QCoreApplication>

#include <unordered_map>

// The rows of a record source as they were in the file when they were read, followed by those that
// have been appended since. What others write shows after a refresh(). read() reads all rows;
// size(), cell() and the like never do. The set writes nothing itself: code that writes a row to
// the file then calls append(), replace() or erase().
//
// Long texts (see Schema.h) are not kept: longText() reads one from the file. If another program
// has changed it since the rows were read, the new text shows. Nothing of this program does, if
// keepLongTexts() is called before each change that is not made through the set.
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
    // the file has them. If nothing was written to it but rows of this set, these rows are read and
    // put into their places. Returns whether the rows were kept. Throws DatabaseError if the
    // database rejects the source or a row cannot be read, and then leaves the set as it was.
    bool refresh(const QString &source);

    // How often the rows have been read or put into their places. What was derived from them is
    // valid as long as this number stays and no row is written.
    int generation() const { return m_generation; }

    // How often the source has been prepared again. What was derived from its columns is valid as
    // long as this number stays.
    int preparation() const { return m_preparation; }

    // Before read(), the number of rows that have been appended.
    qsizetype size() const { return static_cast<qsizetype>(m_rows.size()); }

    // A text or a blob in the cell is valid until the rows are dropped. The cell of a long text is
    // null.
    Cell cell(qsizetype row, int column) const
    {
        return RowStore::cell(m_rows[static_cast<std::size_t>(row)], column);
    }

    // Valid until the rows are dropped.
    RowStore::Row row(qsizetype row) const { return m_rows[static_cast<std::size_t>(row)]; }

    // Whether there are rows with a long text.
    bool hasLongTexts() const { return m_query.longTextColumn() >= 0 && !m_rows.empty(); }

    bool isLongText(int column) const { return column == m_query.longTextColumn(); }

    // The long text of the row with this key, valid until the next call. Throws RowNotFound if
    // another program has deleted the row, or a DatabaseError if the text cannot be read or the
    // file was replaced.
    Cell longText(qint64 key) const;

    // To be called before this program updates or deletes the row with this key, or any rows,
    // otherwise than through the set. Throws DatabaseError if the texts cannot be read.
    void keepLongTexts(std::optional<qint64> key);

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
    bool placeWrittenRows();
    void countOwnChange();
    RowStore::Row store(const FieldValues &values, RowStore::Row old, qint64 key);
    std::optional<qint64> keyIn(const FieldValues &values) const;
    bool isKey(std::size_t column) const;

    Database *m_database;
    SourceQuery m_query;
    RowStore m_store;
    std::vector<RowStore::Row> m_rows;
    bool m_isRead = false;
    int m_generation = 0;
    int m_preparation = 0;

    // The state of the file when the rows were last known to be current, and what the set itself
    // has changed since.
    int m_dataVersion = 0;
    TableChanges m_changes{};

    // By key, the rows that may differ from the file or have another place in it. A row that is
    // appended to a bare table is in order if its key is the largest.
    std::unordered_map<qint64, RowStore::Row> m_written;
    qint64 m_largestKey = 0; // of a bare table

    std::unordered_map<qint64, RowStore::Row> m_keptLongTexts; // by key; in cell 0
    mutable RowStore m_longText; // the one that was read last
};
