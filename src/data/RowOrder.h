#pragma once

#include "data/RowStore.h"

#include <vector>

// The order of the rows of one table by some of its columns, the same as SQLite's ORDER BY gives:
// nulls, numbers, texts, blobs. Rows that are equal in these columns are ordered by their keys.
class RowOrder
{
public:
    struct Column {
        int number;
        bool foldsCase; // whether texts are compared as TextComparison.h defines, or byte by byte
    };

    // `keyColumn` is the number of the cell that holds the row's key.
    RowOrder(std::vector<Column> columns, int keyColumn);

    void sort(std::vector<RowStore::Row> &rows) const;

    // Puts each row of `added` into its place among rows that are in order. The time depends on
    // the number of `rows` only by that of moving a part of the array.
    void insert(std::vector<RowStore::Row> added, std::vector<RowStore::Row> &rows) const;

private:
    bool isLess(RowStore::Row a, RowStore::Row b) const;
    quint64 prefix(RowStore::Row row, int part) const;

    std::vector<Column> m_columns;
    int m_keyColumn;
};
