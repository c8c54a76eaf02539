#pragma once

#include "data/RowSet.h"

#include <optional>

// Searches a record source by a key, such as the lines of a recipe by its RecipeID, while the rows
// of the source have not been read. It reads only the rows with that key, by the index on the
// column (see SourceQuery::indexedColumn()), and keeps them until another key is found.
class KeyedRows
{
public:
    // The set must outlive this object. It is never read here.
    explicit KeyedRows(const RowSet &rows)
        : m_rows(rows)
    {
    }

    // Both return whether a row satisfies the criterion and make it the current one, or keep the
    // one before if none does. They return nothing if all rows must be read for the answer: the
    // index is one of another column, the walk began with another key, rows have been appended to
    // the set, or its source must be prepared again. They throw DatabaseError.
    std::optional<bool> findFirst(const QString &criteria);
    std::optional<bool> findNext(const QString &criteria);

    // Whether findFirst() has read any rows or found that there are none. As long as it is true,
    // all rows must be read before this program changes one of the source's tables.
    bool hasRead() const { return m_hasRead; }

    // A cell of the current row, or null if the row had no such column when it was read. Valid
    // until the next search.
    Cell cell(int column) const
    {
        return column < m_cellCount ? RowStore::cell(m_found[m_current], column) : Cell();
    }

    // The key by which the current row was found.
    qint64 key() const { return m_key; }

    // The number of the current row among all rows, which have been read by now. Returns -1 if
    // another program has changed or deleted the row before they were read.
    qsizetype currentRow() const;

    void clear();

private:
    std::optional<qint64> keyIn(const QString &criteria) const;

    const RowSet &m_rows;
    RowStore m_store;
    RowStore m_spareStore; // for the rows of the next key, while those of the last one are kept
    std::vector<RowStore::Row> m_found;
    std::size_t m_current = 0;
    qint64 m_key = 0; // of the rows found
    std::optional<qint64> m_keyWithoutRows; // the last one that no row has
    int m_cellCount = 0; // of each of them
    bool m_hasRead = false;
};
