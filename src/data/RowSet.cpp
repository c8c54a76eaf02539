#include "data/RowSet.h"

#include "data/DatabaseError.h"

#include <unordered_set>

namespace {

qint64 integerIn(RowStore::Row row, int column)
{
    const Cell cell = RowStore::cell(row, column);
    const auto *integer = std::get_if<qint64>(&cell);
    return integer != nullptr ? *integer : 0;
}

// Appended rows are in the file, too; this removes the second copies that have been read.
void eraseRowsByKey(std::vector<RowStore::Row> &rows, const std::vector<RowStore::Row> &known,
                    int keyColumn)
{
    std::unordered_set<qint64> keys;
    for (const RowStore::Row row : known)
        keys.insert(integerIn(row, keyColumn));
    std::erase_if(rows,
                  [&](RowStore::Row row) { return keys.contains(integerIn(row, keyColumn)); });
}

} // namespace

RowSet::RowSet(Database &database, const QString &source)
    : m_database(&database)
    , m_query(database, source)
{
}

qsizetype RowSet::read(bool keepsColumns)
{
    if (m_isRead)
        return 0;
    const ReadTransaction scope(*m_database);
    if (keepsColumns || !m_rows.empty())
        requireSameColumns();
    if (m_query.isOfClosedFile() && !m_rows.empty())
        failAsChanged(); // the rows that have been appended are not in the file that is open now
    if (isOutdated())
        prepare(m_query.source());
    const int dataVersion = m_database->dataVersion();
    const TableChanges changes = m_database->changes();
    std::vector<RowStore::Row> rows = m_query.rows(m_store);
    const qint64 lastKey =
        rows.empty() || !m_query.isBareTable() ? 0 : integerIn(rows.back(), m_query.keyColumn());
    if (!m_rows.empty())
        eraseRowsByKey(rows, m_rows, m_query.keyColumn());
    const auto rowsBefore = static_cast<qsizetype>(rows.size());
    rows.insert(rows.end(), m_rows.begin(), m_rows.end());

    // Nothing below throws.
    m_isAppendedOutOfOrder = !m_rows.empty();
    m_rows = std::move(rows);
    m_lastKey = lastKey;
    m_dataVersion = dataVersion;
    m_changes = changes;
    m_isRead = true;
    ++m_generation;
    return rowsBefore;
}

bool RowSet::isOutdated() const
{
    return m_query.isOfClosedFile() || m_query.schemaCookie() != m_database->schemaCookie();
}

void RowSet::prepare(const QString &source)
{
    m_query = SourceQuery(*m_database, source);
    ++m_preparation;
}

void RowSet::requireSameColumns() const
{
    if (isOutdated() && SourceQuery(*m_database, m_query.source()).columns() != m_query.columns())
        failAsChanged();
}

void RowSet::failAsChanged()
{
    throw DatabaseError(tr("Another program has changed the tables of the recipe database. Close "
                           "this window and open it again."));
}

void RowSet::discard()
{
    m_rows.clear();
    m_store.clear();
    m_isRead = false;
    m_isAppendedOutOfOrder = false;
}

bool RowSet::refresh(const QString &source)
{
    if (source == m_query.source() && m_isRead && isCurrent())
        return true;
    if (source != m_query.source() || isOutdated())
        prepare(source);
    discard();
    return false;
}

bool RowSet::isCurrent() const
{
    if (m_isAppendedOutOfOrder)
        return false;
    const TableChanges &changes = m_database->changes();
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (m_query.reads(i) && changes[i] != m_changes[i])
            return false;
    }
    return m_database->dataVersion() == m_dataVersion;
}

qint64 RowSet::integer(qsizetype row, int column) const
{
    return integerIn(m_rows[static_cast<std::size_t>(row)], column);
}

void RowSet::append(const FieldValues &values, qint64 key)
{
    m_rows.push_back(store(values, nullptr, key));
    m_isAppendedOutOfOrder = m_isAppendedOutOfOrder || !m_query.isBareTable() || key <= m_lastKey;
    m_lastKey = key;
    ++m_changes[static_cast<std::size_t>(m_query.tableNumber())];
}

void RowSet::replace(qsizetype row, const FieldValues &values)
{
    RowStore::Row &stored = m_rows[static_cast<std::size_t>(row)];
    stored = store(values, stored, key(row));
}

void RowSet::erase(qsizetype row)
{
    m_rows.erase(m_rows.begin() + row);
}

RowStore::Row RowSet::store(const FieldValues &values, RowStore::Row old, qint64 key)
{
    m_store.beginRow();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool isKey = m_query.table().hasKey && m_query.columns()[i].type == FieldType::Key;
        if (values[i])
            m_store.add(toCell(*values[i]));
        else if (old != nullptr)
            m_store.add(RowStore::cell(old, static_cast<int>(i)));
        else
            m_store.add(isKey ? Cell(key) : Cell());
    }
    if (m_query.isBareTable())
        m_store.add(key);
    return m_store.endRow();
}
