#pragma once

#include "data/RowStore.h"

#include <span>
#include <string>
#include <variant>

// What a column is searched for: a key, or a text compared as TextComparison.h says.
struct SearchKey {
    explicit SearchKey(qint64 key);
    explicit SearchKey(std::string text);

    bool matches(const Cell &cell) const;
    bool isText() const { return std::holds_alternative<std::string>(value); }

    std::variant<qint64, std::string> value;
    std::size_t hash;
};

// Finds the rows whose cell in one column equals a key, in the order of the rows, at a cost that
// does not grow with their number. An index serves either texts or keys.
class ColumnIndex
{
public:
    ColumnIndex(int column, bool ofTexts, std::span<const RowStore::Row> rows);

    // Takes in the last of the rows, which has been added behind all others.
    void append(std::span<const RowStore::Row> rows);

    // The number of the first row at or behind `from` that has the key, or -1.
    qsizetype find(const SearchKey &key, std::span<const RowStore::Row> rows, qsizetype from) const;

private:
    static constexpr quint32 none = ~quint32{0};

    struct Chain {
        quint32 first = none;
        quint32 last = none;
    };

    void build(std::span<const RowStore::Row> rows);
    void link(quint32 number, RowStore::Row row);

    int m_column;
    bool m_ofTexts;
    std::vector<Chain> m_chains; // of rows with the same hash; their count is a power of two
    std::vector<quint32> m_next; // for each row, the next one of its chain
};
