#include "data/ColumnIndex.h"

#include "data/TextComparison.h"

#include <bit>

namespace {

std::size_t keyHash(qint64 key)
{
    const quint64 mixed = static_cast<quint64>(key) * 0x9e3779b97f4a7c15U;
    return mixed ^ (mixed >> 32U);
}

} // namespace

SearchKey::SearchKey(qint64 key)
    : value(key)
    , hash(keyHash(key))
{
}

SearchKey::SearchKey(std::string text)
    : value(std::move(text))
    , hash(textHash(std::get<std::string>(value)))
{
}

bool SearchKey::matches(const Cell &cell) const
{
    if (const auto *text = std::get_if<std::string>(&value))
        return cell.type == Cell::Type::Text && textsEqual(cell.bytes, *text);
    return cell.type == Cell::Type::Integer && cell.integer == std::get<qint64>(value);
}

ColumnIndex::ColumnIndex(int column, bool ofTexts, std::span<const RowStore::Row> rows)
    : m_column(column)
    , m_ofTexts(ofTexts)
{
    build(rows);
}

void ColumnIndex::build(std::span<const RowStore::Row> rows)
{
    m_chains.assign(std::bit_ceil(rows.size() + 1), {});
    m_next.assign(rows.size(), none);
    for (std::size_t i = 0; i < rows.size(); ++i)
        link(static_cast<quint32>(i), rows[i]);
}

void ColumnIndex::link(quint32 number, RowStore::Row row)
{
    const Cell cell = RowStore::cell(row, m_column);
    if (cell.type != (m_ofTexts ? Cell::Type::Text : Cell::Type::Integer))
        return;
    const std::size_t hash = m_ofTexts ? textHash(cell.bytes) : keyHash(cell.integer);
    Chain &chain = m_chains[hash & (m_chains.size() - 1)];
    if (chain.first == none)
        chain.first = number;
    else
        m_next[chain.last] = number;
    chain.last = number;
}

void ColumnIndex::append(std::span<const RowStore::Row> rows)
{
    if (rows.size() > m_chains.size()) {
        build(rows);
        return;
    }
    m_next.push_back(none);
    link(static_cast<quint32>(rows.size() - 1), rows.back());
}

qsizetype ColumnIndex::find(const SearchKey &key, std::span<const RowStore::Row> rows,
                            qsizetype from) const
{
    quint32 number = m_chains[key.hash & (m_chains.size() - 1)].first;
    // A walk from one hit to the next starts where the last one was found.
    if (from > 0 && key.matches(RowStore::cell(rows[static_cast<std::size_t>(from - 1)], m_column)))
        number = m_next[static_cast<std::size_t>(from - 1)];
    for (; number != none; number = m_next[number]) {
        if (number >= from && key.matches(RowStore::cell(rows[number], m_column)))
            return number;
    }
    return -1;
}
