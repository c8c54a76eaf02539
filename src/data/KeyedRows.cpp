#include "data/KeyedRows.h"

#include "data/Criterion.h"

#include <algorithm>

std::optional<qint64> KeyedRows::keyIn(const QString &criteria) const
{
    const SourceQuery &query = m_rows.query();
    if (m_rows.isRead() || m_rows.size() > 0 || query.indexedColumn() < 0)
        return {};
    const Criterion criterion = Criterion::parse(criteria);
    const auto *key = std::get_if<qint64>(&criterion.value);
    const auto column = static_cast<std::size_t>(query.indexedColumn());
    if (key == nullptr || !isSameName(criterion.field.toStdString(), query.columns()[column].name))
        return {};
    return *key;
}

std::optional<bool> KeyedRows::findFirst(const QString &criteria)
{
    const std::optional<qint64> key = keyIn(criteria);
    if (!key)
        return {};
    const ReadTransaction scope(m_rows.database());
    if (m_rows.isOutdated())
        return {};
    if (key == m_keyWithoutRows)
        return false;
    if (m_found.empty() || *key != m_key) {
        m_spareStore.clear();
        std::vector<RowStore::Row> found = m_rows.query().rowsWithKey(*key, m_spareStore);
        m_hasRead = true;
        if (found.empty()) {
            m_keyWithoutRows = key;
            return false;
        }
        std::swap(m_store, m_spareStore);
        m_found = std::move(found);
        m_key = *key;
        m_cellCount = m_rows.query().cellCount();
    }
    m_current = 0;
    return true;
}

std::optional<bool> KeyedRows::findNext(const QString &criteria)
{
    if (m_found.empty() || keyIn(criteria) != m_key)
        return {};
    if (m_current + 1 == m_found.size())
        return false;
    ++m_current;
    return true;
}

// Nothing but its cells identifies a row of a join, and several rows can have the same ones. They
// have the same order among the rows with a key as among all rows.
qsizetype KeyedRows::currentRow() const
{
    const SourceQuery &query = m_rows.query();
    if (query.cellCount() != m_cellCount)
        return -1;
    const bool hasKey = query.isUpdatable() && query.table().hasKey;
    const auto isCurrent = [&](RowStore::Row row) {
        if (hasKey)
            return RowStore::cell(row, query.keyColumn()) == cell(query.keyColumn());
        int column = 0;
        while (column < m_cellCount && RowStore::cell(row, column) == cell(column))
            ++column;
        return column == m_cellCount;
    };
    const auto current = m_found.begin() + static_cast<std::ptrdiff_t>(m_current);
    auto before = std::count_if(m_found.begin(), current, isCurrent);
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (isCurrent(m_rows.row(row)) && before-- == 0)
            return row;
    }
    return -1;
}

void KeyedRows::clear()
{
    m_found.clear();
    m_keyWithoutRows.reset();
    m_store.clear();
    m_hasRead = false;
}
