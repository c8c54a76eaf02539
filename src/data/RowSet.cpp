#include "data/RowSet.h"

#include "data/DatabaseError.h"

#include <algorithm>
#include <functional>

namespace {

qint64 integerIn(RowStore::Row row, int column)
{
    const Cell cell = RowStore::cell(row, column);
    const auto *integer = std::get_if<qint64>(&cell);
    return integer != nullptr ? *integer : 0;
}

// Appended rows are in the file, too; this removes the second copies that have been read.
void eraseRowsByKey(std::vector<RowStore::Row> &rows,
                    const std::unordered_map<qint64, RowStore::Row> &known, int keyColumn)
{
    std::erase_if(rows,
                  [&](RowStore::Row row) { return known.contains(integerIn(row, keyColumn)); });
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
    const qint64 largestKey =
        rows.empty() || !m_query.isBareTable() ? 0 : integerIn(rows.back(), m_query.keyColumn());
    std::unordered_map<qint64, RowStore::Row> appended;
    for (const RowStore::Row row : m_rows)
        appended.emplace(integerIn(row, m_query.keyColumn()), row);
    if (!m_rows.empty())
        eraseRowsByKey(rows, appended, m_query.keyColumn());
    const auto rowsBefore = static_cast<qsizetype>(rows.size());
    rows.insert(rows.end(), m_rows.begin(), m_rows.end());

    // Nothing below throws.
    m_rows = std::move(rows);
    m_written = std::move(appended);
    m_largestKey = largestKey;
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
    m_written.clear();
    m_keptLongTexts.clear();
    m_store.clear();
    m_isRead = false;
}

bool RowSet::refresh(const QString &source)
{
    if (source == m_query.source() && m_isRead && isCurrent() && placeWrittenRows())
        return true;
    if (source != m_query.source() || isOutdated())
        prepare(source);
    discard();
    return false;
}

bool RowSet::isCurrent() const
{
    const TableChanges &changes = m_database->changes();
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (m_query.reads(i) && changes[i] != m_changes[i])
            return false;
    }
    return m_database->dataVersion() == m_dataVersion;
}

// Returns false if all rows must be read.
bool RowSet::placeWrittenRows()
{
    if (m_written.empty())
        return true;
    if (m_query.order() == nullptr)
        return false;
    std::vector<RowStore::Row> before;
    std::vector<RowStore::Row> now;
    for (const auto &[key, row] : m_written) {
        before.push_back(row);
        // Defaults, conversions and triggers may have stored other values than were written.
        now.push_back(m_query.row(key, m_store));
        if (now.back() == nullptr)
            return false;
    }
    std::sort(before.begin(), before.end(), std::less());
    std::erase_if(m_rows, [&before](RowStore::Row row) {
        return std::binary_search(before.begin(), before.end(), row, std::less());
    });
    m_query.order()->insert(std::move(now), m_rows);
    m_written.clear();
    m_keptLongTexts.clear();
    ++m_generation;
    return true;
}

qint64 RowSet::integer(qsizetype row, int column) const
{
    return integerIn(m_rows[static_cast<std::size_t>(row)], column);
}

Cell RowSet::longText(qint64 key) const
{
    const auto kept = m_keptLongTexts.find(key);
    if (kept != m_keptLongTexts.end())
        return RowStore::cell(kept->second, 0);
    if (m_query.isOfClosedFile()) // which was damaged, or else it would not have been replaced
        throw DatabaseError(tr("The recipe database was replaced. Press F5 to show what is in it "
                               "now."));
    m_longText.clear();
    const RowStore::Row text = m_query.longText(key, m_longText);
    if (text == nullptr)
        throw RowNotFound(DatabaseError::Operation::Reading);
    return RowStore::cell(text, 0);
}

void RowSet::keepLongTexts(std::optional<qint64> key)
{
    if (!hasLongTexts() || m_query.isOfClosedFile())
        return;
    if (!key) {
        for (const RowStore::Row text : m_query.longTexts(m_store))
            m_keptLongTexts.emplace(integerIn(text, 1), text);
    } else if (!m_keptLongTexts.contains(*key)) {
        if (const RowStore::Row text = m_query.longText(*key, m_store); text != nullptr)
            m_keptLongTexts.emplace(*key, text);
    }
}

// A change that is not counted makes the next refresh() drop the rows.
void RowSet::countOwnChange()
{
    if (m_query.order() != nullptr)
        ++m_changes[static_cast<std::size_t>(m_query.tableNumber())];
}

void RowSet::append(const FieldValues &values, qint64 key)
{
    m_rows.push_back(store(values, nullptr, key));
    if (m_isRead && (!m_query.isBareTable() || key <= m_largestKey))
        m_written[key] = m_rows.back();
    m_largestKey = std::max(m_largestKey, key);
    countOwnChange();
}

void RowSet::replace(qsizetype row, const FieldValues &values)
{
    const qint64 oldKey = key(row);
    const qint64 newKey = keyIn(values).value_or(oldKey);
    RowStore::Row &stored = m_rows[static_cast<std::size_t>(row)];
    stored = store(values, stored, newKey);
    m_written.erase(oldKey);
    m_written[newKey] = stored;
    const int longText = m_query.longTextColumn();
    if (longText >= 0 && values[static_cast<std::size_t>(longText)])
        m_keptLongTexts.erase(oldKey);
    countOwnChange();
}

void RowSet::erase(qsizetype row)
{
    m_written.erase(key(row));
    m_rows.erase(m_rows.begin() + row);
    countOwnChange();
}

// Returns the key that a row gets with these values, or nothing if they leave that to the database.
std::optional<qint64> RowSet::keyIn(const FieldValues &values) const
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto *key = isKey(i) && values[i] ? std::get_if<qint64>(&*values[i]) : nullptr;
        if (key != nullptr)
            return *key;
    }
    return {};
}

bool RowSet::isKey(std::size_t column) const
{
    return m_query.table().hasKey && m_query.columns()[column].type == FieldType::Key;
}

RowStore::Row RowSet::store(const FieldValues &values, RowStore::Row old, qint64 key)
{
    m_store.beginRow();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto column = static_cast<int>(i);
        if (isKey(i))
            m_store.add(key);
        else if (isLongText(column))
            m_store.add({});
        else if (values[i])
            m_store.add(toCell(*values[i]));
        else
            m_store.add(old == nullptr ? Cell() : RowStore::cell(old, column));
    }
    if (m_query.isBareTable())
        m_store.add(key);
    return m_store.endRow();
}
