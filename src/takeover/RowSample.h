#pragma once

#include "oldfiles/RowReader.h"

#include <vector>

// Some rows of a table, spread evenly over all of them: the places of the rows in the old file and
// their rowids in the new one.
class RowSample
{
public:
    struct Row {
        qint64 number; // among the rows that were read, from 0
        oldfiles::RowPlace place;
        qint64 rowid;
    };

    // To be called for each row, in their order.
    void offer(const Row &row)
    {
        if (row.number % m_step != 0)
            return;
        m_rows.push_back(row);
        if (m_rows.size() == largestSize)
            thin();
    }

    const std::vector<Row> &rows() const { return m_rows; }

private:
    static constexpr std::size_t largestSize = 512;

    void thin()
    {
        m_step *= 2;
        std::erase_if(m_rows, [this](const Row &row) { return row.number % m_step != 0; });
    }

    qint64 m_step = 1;
    std::vector<Row> m_rows;
};
