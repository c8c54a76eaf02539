#pragma once

#include <QtGlobal>

#include <vector>

// Some rows of a table, spread evenly over all of them: which readable row of the old file, counted
// from 0, has which rowid in the new one.
class RowSample
{
public:
    struct Row {
        qint64 number;
        qint64 rowid;
    };

    // To be called for each row, in their order.
    void offer(qint64 number, qint64 rowid)
    {
        if (number % m_step != 0)
            return;
        m_rows.push_back({number, rowid});
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
