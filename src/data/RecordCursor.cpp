#include "data/RecordCursor.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/TextComparison.h"
#include "data/Transaction.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>
#include <unordered_set>

namespace {

// QString::fromUtf8 would take a byte order mark at the front for none of the text.
QString textOf(std::string_view bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return utf8.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

Cell toCell(const FieldValue &value)
{
    if (const auto *integer = std::get_if<qint64>(&value))
        return {Cell::Type::Integer, *integer, 0, {}};
    if (const auto *number = std::get_if<double>(&value))
        return {Cell::Type::Real, 0, *number, {}};
    if (const auto *text = std::get_if<std::string>(&value))
        return {Cell::Type::Text, 0, 0, *text};
    return {};
}

std::string_view view(QLatin1StringView text)
{
    return {text.data(), static_cast<std::size_t>(text.size())};
}

// Takes out the rows that have one of the keys.
void eraseRowsByKey(std::vector<RowStore::Row> &rows, const std::vector<RowStore::Row> &known,
                    int keyColumn)
{
    std::unordered_set<qint64> keys;
    for (const RowStore::Row row : known)
        keys.insert(RowStore::cell(row, keyColumn).integer);
    std::erase_if(rows, [&](RowStore::Row row) {
        return keys.contains(RowStore::cell(row, keyColumn).integer);
    });
}

} // namespace

QVariant toVariant(const Cell &cell)
{
    switch (cell.type) {
    case Cell::Type::Null:
        return {};
    case Cell::Type::Integer:
        return cell.integer;
    case Cell::Type::Real:
        return cell.real;
    case Cell::Type::Text:
        return textOf(cell.bytes);
    case Cell::Type::Blob:
        return QByteArray(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()));
    }
    return {};
}

RecordCursor::RecordCursor(std::shared_ptr<Database> database, const QString &recordSource)
    : m_database(std::move(database))
    , m_recordSource(recordSource)
    , m_query(*m_database, recordSource)
{
}

RecordCursor::~RecordCursor()
{
    m_database->delist(*this);
}

void RecordCursor::fail(const char *text) const
{
    throw DatabaseError(QCoreApplication::translate("RecordCursor", text).arg(m_query.source()));
}

// Reading the rows

void RecordCursor::readRows()
{
    if (m_isRead)
        return;
    const ReadTransaction scope(*m_database);
    const int version = m_database->dataVersion();
    const TableChanges changes = m_database->changes();
    std::vector<RowStore::Row> rows = runSource();

    m_search = {};
    m_versionRead = version;
    m_changesRead = changes;
    m_isRead = true;
    ++m_generation;
    if (m_query.isBareTable())
        m_lastKey = rows.empty() ? 0 : RowStore::cell(rows.back(), m_query.keyColumn()).integer;
    if (!m_rows.empty()) {
        m_addedOutOfPlace = true;
        eraseRowsByKey(rows, m_rows, m_query.keyColumn());
    }
    m_row += static_cast<qsizetype>(rows.size());
    rows.insert(rows.end(), m_rows.begin(), m_rows.end());
    m_rows = std::move(rows);
    if (m_place == Place::Unset)
        setPosition(0);
}

std::vector<RowStore::Row> RecordCursor::runSource()
{
    std::vector<RowStore::Row> rows = m_query.rows(m_store);
    if (m_query.isOutdated()) {
        m_query = SourceQuery(*m_database, m_query.source());
        m_writer.reset();
        rows = m_query.rows(m_store);
    }
    return rows;
}

void RecordCursor::discardRows()
{
    m_rows.clear();
    m_searched.clear();
    m_store.clear();
    m_isRead = false;
    m_addedOutOfPlace = false;
    m_place = Place::Unset;
    m_row = 0;
}

void RecordCursor::transactionRolledBack()
{
    m_buffer = Buffer::Closed;
    discardRows();
}

bool RecordCursor::isUnchanged()
{
    if (m_addedOutOfPlace)
        return false;
    const TableChanges &changes = m_database->changes();
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (m_query.reads(i) && changes[i] != m_changesRead[i])
            return false;
    }
    return m_database->dataVersion() == m_versionRead;
}

void RecordCursor::Requery()
{
    m_buffer = Buffer::Closed;
    if (m_recordSource != m_query.source()) {
        m_query = SourceQuery(*m_database, m_recordSource);
        m_search = {};
        m_writer.reset();
        discardRows();
    } else if (m_isRead && isUnchanged()) {
        moveTo(0);
    } else {
        discardRows();
    }
}

// Moving

void RecordCursor::moveTo(qsizetype row)
{
    m_buffer = Buffer::Closed;
    setPosition(row);
}

void RecordCursor::setPosition(qsizetype row)
{
    m_row = m_rows.empty() ? 0 : row;
    if (m_row < 0)
        m_place = Place::BeforeFirst;
    else
        m_place = m_row < rowCount() ? Place::OnRow : Place::AfterLast;
}

// The number of the row behind the position; rows may have been added since the cursor came there.
qsizetype RecordCursor::nextRow() const
{
    switch (m_place) {
    case Place::OnRow:
        return m_row + 1;
    case Place::Deleted:
        return m_row;
    case Place::AfterLast:
        return rowCount();
    default:
        return 0;
    }
}

void RecordCursor::MoveFirst()
{
    readRows();
    moveTo(0);
}

void RecordCursor::MoveLast()
{
    if (m_rows.empty())
        readRows();
    moveTo(rowCount() - 1);
}

void RecordCursor::MoveNext()
{
    readRows();
    if (AtEOF())
        fail(QT_TRANSLATE_NOOP("RecordCursor",
                               "There is no row to move to behind the last one: %1"));
    moveTo(nextRow());
}

void RecordCursor::MovePrevious()
{
    readRows();
    if (AtBOF())
        fail(QT_TRANSLATE_NOOP("RecordCursor",
                               "There is no row to move to before the first one: %1"));
    moveTo((m_place == Place::AfterLast ? rowCount() : m_row) - 1);
}

bool RecordCursor::AtBOF()
{
    readRows();
    return m_rows.empty() || m_place == Place::BeforeFirst;
}

bool RecordCursor::AtEOF()
{
    readRows();
    return m_rows.empty() || m_place == Place::AfterLast;
}

qsizetype RecordCursor::RecordCount()
{
    readRows();
    return rowCount();
}

void RecordCursor::requireRow()
{
    if (m_place == Place::Unset)
        readRows();
    if (m_place != Place::OnRow)
        fail(QT_TRANSLATE_NOOP("RecordCursor", "There is no current row in: %1"));
}

// Searching

void RecordCursor::FindFirst(const QString &criteria)
{
    readRows();
    search(criteria, 0);
}

void RecordCursor::FindNext(const QString &criteria)
{
    readRows();
    search(criteria, nextRow());
}

void RecordCursor::search(const QString &criteria, qsizetype from)
{
    m_buffer = Buffer::Closed;
    if (criteria.isEmpty() || criteria != m_search.criteria)
        prepareSearch(criteria);
    const qsizetype found = find(from);
    m_noMatch = found < 0;
    if (!m_noMatch)
        moveTo(found);
}

void RecordCursor::prepareSearch(const QString &criteria)
{
    Criterion parsed = Criterion::parse(criteria);
    Search search;
    search.column = m_query.columnNumber(parsed.field);
    if (auto *text = std::get_if<std::string>(&parsed.value)) {
        search.isPattern = parsed.comparison == Comparison::Like && hasPatternCharacters(*text);
        search.key = SearchKey(std::move(*text));
    } else {
        search.key = SearchKey(std::get<qint64>(parsed.value));
    }
    search.criteria = criteria;
    m_search = std::move(search);
}

// One search is cheaper without an index; it is made as soon as the rows that were looked at would
// have paid for it. A walk through all matches thus ends with the index for the next one.
qsizetype RecordCursor::find(qsizetype from)
{
    if (m_search.isPattern)
        return scan(from);
    const bool isText = m_search.key.isText();
    auto searched = std::find_if(m_searched.begin(), m_searched.end(), [&](const auto &known) {
        return known.column == m_search.column && known.isText == isText;
    });
    if (searched == m_searched.end())
        searched = m_searched.insert(m_searched.end(), {m_search.column, isText, 0, {}});
    if (searched->index)
        return searched->index->find(m_search.key, m_rows, from);

    const qsizetype found = scan(from);
    searched->scannedRows += 1 + (found < 0 ? rowCount() : found) - from;
    if (searched->scannedRows > rowCount())
        searched->index.emplace(m_search.column, isText, m_rows);
    return found;
}

qsizetype RecordCursor::scan(qsizetype from) const
{
    const auto *text = std::get_if<std::string>(&m_search.key.value);
    for (qsizetype i = from; i < rowCount(); ++i) {
        const Cell cell = RowStore::cell(row(i), m_search.column);
        const bool matches = m_search.isPattern
            ? cell.type == Cell::Type::Text && textMatches(cell.bytes, *text)
            : m_search.key.matches(cell);
        if (matches)
            return i;
    }
    return -1;
}

// Reading and writing fields

QVariant RecordCursor::value(QLatin1StringView field)
{
    if (m_place == Place::Unset)
        readRows(); // may find that the table has other fields by now
    const int column = m_query.columnNumber(view(field));
    requireRow();
    return toVariant(RowStore::cell(row(m_row), column));
}

int RecordCursor::columnNumber(QLatin1StringView field)
{
    readRows();
    return m_query.columnNumber(view(field));
}

Cell RecordCursor::cellAt(qsizetype row, int column)
{
    readRows();
    return RowStore::cell(this->row(row), column);
}

void RecordCursor::setValue(QLatin1StringView field, const QVariant &value)
{
    const int column = m_query.columnNumber(view(field));
    if (m_buffer == Buffer::Closed)
        throw DatabaseError(
            QCoreApplication::translate("RecordCursor",
                                        "The field %1 cannot be written while no row is being "
                                        "added or edited in: %2")
                .arg(field, m_query.source()));
    std::optional<FieldValue> stored =
        convertToField(m_query.columns()[static_cast<std::size_t>(column)].type, value);
    if (!stored)
        throw DatabaseError(
            QCoreApplication::translate("RecordCursor", "The field %1 does not take \"%2\".")
                .arg(field, value.toString()));
    m_values[static_cast<std::size_t>(column)] = std::move(stored);
}

void RecordCursor::openBuffer(Buffer buffer)
{
    if (!m_query.isUpdatable())
        fail(QT_TRANSLATE_NOOP("RecordCursor", "These rows can only be read: %1"));
    m_values.assign(m_query.columns().size(), std::nullopt);
    m_buffer = buffer;
}

void RecordCursor::AddNew()
{
    openBuffer(Buffer::Adding);
}

void RecordCursor::Edit()
{
    requireRow();
    openBuffer(Buffer::Editing);
}

TableWriter &RecordCursor::writer()
{
    if (!m_writer) {
        std::vector<std::string> fields;
        for (const SourceQuery::Column &column : m_query.columns())
            fields.push_back(column.name);
        const std::string key = m_query.isBareTable()
            ? "rowid"
            : m_query.columns()[static_cast<std::size_t>(m_query.keyColumn())].name;
        m_writer = std::make_unique<TableWriter>(*m_database, std::string(m_query.table().name),
                                                 std::move(fields), key);
    }
    return *m_writer;
}

void RecordCursor::Update()
{
    if (m_buffer == Buffer::Closed)
        fail(QT_TRANSLATE_NOOP("RecordCursor", "No row is being added or edited in: %1"));
    const bool adding = m_buffer == Buffer::Adding;
    m_buffer = Buffer::Closed;
    m_database->enlist(*this);
    if (adding)
        addRow();
    else
        changeRow();
}

void RecordCursor::addRow()
{
    const auto table = static_cast<std::size_t>(m_query.tableNumber());
    const qint64 key = writer().insert(m_values);
    m_rows.push_back(storedRow(nullptr, key));
    for (SearchedColumn &searched : m_searched) {
        if (searched.index)
            searched.index->append(m_rows);
    }
    // In a bare table the row stands where a new run would put it, as long as keys grow.
    m_addedOutOfPlace = m_addedOutOfPlace || !m_query.isBareTable() || key <= m_lastKey;
    m_lastKey = key;
    ++m_changesRead[table];
}

void RecordCursor::changeRow()
{
    const bool writesNothing = std::none_of(m_values.begin(), m_values.end(),
                                            [](const auto &value) { return value.has_value(); });
    if (writesNothing)
        return;
    const RowStore::Row old = row(m_row);
    const qint64 key = RowStore::cell(old, m_query.keyColumn()).integer;
    writer().update(key, m_values);
    m_rows[static_cast<std::size_t>(m_row)] = storedRow(old, key);
    m_searched.clear();
}

// The row as the buffer leaves it in the table: an old one with its changes, or a new one.
RowStore::Row RecordCursor::storedRow(RowStore::Row old, qint64 key)
{
    const Cell keyCell{Cell::Type::Integer, key, 0, {}};
    m_store.beginRow();
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const int column = static_cast<int>(i);
        const bool isKey = m_query.table().hasKey && m_query.columns()[i].type == FieldType::Key;
        if (m_values[i])
            m_store.add(toCell(*m_values[i]));
        else if (old != nullptr)
            m_store.add(RowStore::cell(old, column));
        else
            m_store.add(isKey ? keyCell : Cell{});
    }
    if (m_query.isBareTable())
        m_store.add(keyCell);
    return m_store.endRow();
}

void RecordCursor::Delete()
{
    requireRow();
    if (!m_query.isUpdatable())
        fail(QT_TRANSLATE_NOOP("RecordCursor", "These rows can only be read: %1"));
    readRows();
    m_buffer = Buffer::Closed;
    m_database->enlist(*this);
    writer().remove(RowStore::cell(row(m_row), m_query.keyColumn()).integer);
    m_rows.erase(m_rows.begin() + m_row);
    m_searched.clear();
    m_place = Place::Deleted;
}
