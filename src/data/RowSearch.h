#pragma once

#include "data/Criterion.h"
#include "data/RowSet.h"

#include <string>

// What a column is searched for: a key, or a text that is compared as TextComparison.h defines.
struct SearchKey {
    explicit SearchKey(FieldValue value);

    bool matches(const Cell &cell) const;
    bool isText() const { return std::holds_alternative<std::string>(value); }

    FieldValue value;
    std::size_t hash;
};

// Finds the rows whose cell in one column equals a key, in the order of the rows and in a time that
// does not depend on their number. An index holds either the texts or the keys of its column.
class ColumnIndex
{
public:
    ColumnIndex(int column, bool ofTexts, const RowSet &rows);

    // Adds the last row.
    void append(const RowSet &rows);

    // The number of the first row from `from` on that has the key, or -1.
    qsizetype find(const SearchKey &key, const RowSet &rows, qsizetype from) const;

private:
    static constexpr quint32 none = ~quint32{0};

    struct Chain {
        quint32 first = none;
        quint32 last = none;
    };

    void build(const RowSet &rows);
    void link(quint32 row, const Cell &cell);

    int m_column;
    bool m_ofTexts;
    std::vector<Chain> m_chains; // of rows with the same hash; their count is a power of two
    std::vector<quint32> m_next; // for each row, the next one of its chain
};

// Searches a row set by criteria, see Criterion.h. A search by equality scans the rows at first. As
// soon as the scans of a column have visited each row several times, the column gets an index.
class RowSearch
{
public:
    // The rows must outlive the search and have been read before it is used.
    explicit RowSearch(const RowSet &rows)
        : m_rows(rows)
    {
    }

    // The number of the first row from `from` on that satisfies the criterion, or -1. Throws
    // DatabaseError if the text is not a criterion or there is no such field.
    qsizetype find(const QString &criteria, qsizetype from);
    qsizetype find(Criterion criterion, qsizetype from);

    // To be called after a row has been appended.
    void rowAppended();

    // To be called after rows have been read, dropped, replaced or erased.
    void clear();

private:
    struct Prepared {
        std::optional<QString> criteria; // none if the criterion was not given as text
        int column;
        bool isPattern;
        SearchKey key;
    };

    struct SearchedColumn {
        int column;
        bool isText;
        qsizetype lastFound = -1;
        qsizetype scannedRows = 0;
        std::optional<ColumnIndex> index = {};
    };

    Prepared prepare(Criterion criterion) const;
    qsizetype findPrepared(qsizetype from);
    SearchedColumn &searchedColumn();
    bool isKeyAt(qsizetype row) const; // whether the only row with the key is the one at `row`
    qsizetype scan(qsizetype from) const;

    const RowSet &m_rows;
    std::optional<Prepared> m_prepared; // the last criterion; FindNext() repeats it
    std::vector<SearchedColumn> m_searched;
};
