#include "data/RecordCursor.h"

#include "data/DatabaseError.h"
#include "platform/Utf8.h"

#include <QScopeGuard>

#include <algorithm>

RecordCursor::RecordCursor(std::shared_ptr<Database> database, const QString &recordSource)
    : m_database(std::move(database))
    , m_recordSource(recordSource)
    , m_rows(*m_database, recordSource)
{
    m_database->addObserver(*this);
}

RecordCursor::~RecordCursor()
{
    m_database->removeObserver(*this);
    m_database->delist(*this);
}

void RecordCursor::fail(const QString &text) const
{
    throw DatabaseError(text.arg(m_rows.query().source()));
}

void RecordCursor::readRows()
{
    if (m_rows.isRead())
        return;
    const qsizetype rowsBefore = m_rows.read(m_buffer != Buffer::Closed);
    m_row += rowsBefore;
    m_search.clear();
    if (m_place == Place::Unset)
        setPosition(rowsBefore > 0 ? 0 : m_rows.size()); // rows added to an empty set precede it
    else if (m_place == Place::OnKeyedRow)
        setPosition(m_keyedRows.currentRow());
    m_keyedRows.clear();
}

const RowSet &RecordCursor::rows()
{
    readRows();
    return m_rows;
}

void RecordCursor::dropRows()
{
    m_buffer = Buffer::Closed;
    m_rows.discard();
    m_keyedRows.clear();
    m_search.clear();
    m_place = Place::Unset;
    m_row = 0;
}

void RecordCursor::transactionRolledBack()
{
    dropRows();
}

// A search by a key that follows the change must find what was in the file before it, as the
// searches before it have.
void RecordCursor::aboutToChange(const TableChange &change)
{
    if (!m_rows.query().reads(change.table))
        return;
    const auto hidesLongTexts = [&] { return m_rows.hasLongTexts() && !change.isInsertion; };
    if (!m_keyedRows.hasRead() && !hidesLongTexts())
        return;
    if (m_isSuspended) {
        dropRows();
        return;
    }
    if (m_keyedRows.hasRead())
        readRows();
    if (hidesLongTexts())
        m_rows.keepLongTexts(change.rowid);
}

void RecordCursor::Requery()
{
    m_isSuspended = false;
    m_buffer = Buffer::Closed;
    // If the file cannot be read now, its former rows must not pass for the current ones.
    auto drop = qScopeGuard([this] { dropRows(); });
    const int generation = m_rows.generation();
    if (!m_rows.refresh(m_recordSource))
        return;
    drop.dismiss();
    if (m_rows.generation() != generation)
        m_search.clear();
    moveTo(0);
}

qsizetype RecordCursor::RecordCount()
{
    return rows().size();
}

void RecordCursor::moveTo(qsizetype row)
{
    m_buffer = Buffer::Closed;
    setPosition(row);
}

void RecordCursor::setPosition(qsizetype row)
{
    m_row = m_rows.size() == 0 ? 0 : row;
    if (m_row < 0)
        m_place = Place::BeforeFirst;
    else
        m_place = m_row < m_rows.size() ? Place::OnRow : Place::AfterLast;
}

// AfterLast does not use m_row, since rows may have been added after the cursor moved there.
qsizetype RecordCursor::nextRow() const
{
    switch (m_place) {
    case Place::OnRow:
        return m_row + 1;
    case Place::Deleted:
        return m_row;
    case Place::AfterLast:
        return m_rows.size();
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
    if (m_rows.size() == 0)
        readRows();
    moveTo(m_rows.size() - 1);
}

void RecordCursor::MoveNext()
{
    if (AtEOF())
        fail(tr("There is no row to move to after the last one: %1"));
    moveTo(nextRow());
}

void RecordCursor::MovePrevious()
{
    if (AtBOF())
        fail(tr("There is no row to move to before the first one: %1"));
    moveTo((m_place == Place::AfterLast ? m_rows.size() : m_row) - 1);
}

bool RecordCursor::AtBOF()
{
    return RecordCount() == 0 || m_place == Place::BeforeFirst;
}

bool RecordCursor::AtEOF()
{
    return RecordCount() == 0 || m_place == Place::AfterLast;
}

void RecordCursor::requireRow()
{
    if (m_place == Place::Unset || m_place == Place::OnKeyedRow)
        readRows();
    if (m_place != Place::OnRow)
        fail(tr("There is no current row in: %1"));
}

void RecordCursor::FindFirst(const QString &criteria)
{
    if (findInKeyedRows(m_keyedRows.findFirst(criteria)))
        return;
    readRows();
    find(criteria, 0);
}

void RecordCursor::FindFirst(Criterion criterion)
{
    readRows();
    find(std::move(criterion), 0);
}

void RecordCursor::FindNext(const QString &criteria)
{
    if (m_place == Place::OnKeyedRow && findInKeyedRows(m_keyedRows.findNext(criteria)))
        return;
    readRows();
    find(criteria, nextRow());
}

// Returns whether the index gave an answer.
bool RecordCursor::findInKeyedRows(std::optional<bool> isFound)
{
    if (!isFound)
        return false;
    m_buffer = Buffer::Closed;
    m_noMatch = !*isFound;
    if (*isFound)
        m_place = Place::OnKeyedRow;
    return true;
}

template <typename Criteria>
void RecordCursor::find(Criteria &&criteria, qsizetype from)
{
    m_buffer = Buffer::Closed;
    const qsizetype found = m_search.find(std::forward<Criteria>(criteria), from);
    m_noMatch = found < 0;
    if (!m_noMatch)
        setPosition(found);
}

QVariant RecordCursor::value(QLatin1StringView field)
{
    if (m_place == Place::Unset)
        readRows(); // may change the columns
    const int column = m_rows.columnNumber(field);
    if (m_place == Place::OnKeyedRow)
        return toVariant(m_rows.isLongText(column) ? m_rows.longText(m_keyedRows.key())
                                                   : m_keyedRows.cell(column));
    requireRow();
    return toVariant(m_rows.isLongText(column) ? m_rows.longText(m_rows.key(m_row))
                                               : m_rows.cell(m_row, column));
}

qint64 RecordCursor::key()
{
    requireRow();
    return m_rows.key(m_row);
}

// Returns the field's place in the edit buffer.
std::size_t RecordCursor::writtenColumn(QLatin1StringView field) const
{
    const int column = m_rows.columnNumber(field);
    if (m_buffer == Buffer::Closed)
        throw DatabaseError(tr("The field %1 cannot be written while no row is being added or "
                               "edited in: %2")
                                .arg(field, m_rows.query().source()));
    return static_cast<std::size_t>(column);
}

void RecordCursor::setValue(QLatin1StringView field, const QVariant &value)
{
    const std::size_t column = writtenColumn(field);
    std::optional<FieldValue> converted = convertToField(typeOf(column), value);
    if (!converted)
        failForValue(field, value.toString());
    m_values[column] = std::move(converted);
}

void RecordCursor::setValue(QLatin1StringView field, std::string_view text)
{
    const std::size_t column = writtenColumn(field);
    std::optional<FieldValue> converted = convertToField(typeOf(column), text);
    if (!converted)
        failForValue(field, platform::decodeUtf8(text));
    m_values[column] = std::move(converted);
}

void RecordCursor::setKey(QLatin1StringView field, qint64 key)
{
    const std::size_t column = writtenColumn(field);
    Q_ASSERT(typeOf(column) == FieldType::Key);
    m_values[column] = key;
}

void RecordCursor::failForValue(QLatin1StringView field, const QString &value)
{
    throw DatabaseError(tr("The field %1 does not take \"%2\".").arg(field, value));
}

void RecordCursor::requireUpdatable() const
{
    if (!m_rows.query().isUpdatable())
        fail(tr("These rows can only be read: %1"));
}

// In the file that has taken the place of the one that was read, the same key may be another row.
void RecordCursor::requireOpenFile() const
{
    if (m_rows.query().isOfClosedFile())
        fail(tr("Nothing was stored, because the recipe database was replaced. Show the entry "
                "again and repeat the change. (%1)"));
}

void RecordCursor::openBuffer(Buffer buffer)
{
    requireUpdatable();
    m_values.assign(m_rows.query().columns().size(), std::nullopt);
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
    m_rows.requireSameColumns();
    const SourceQuery &query = m_rows.query();
    if (!m_writer || m_writerPreparation != m_rows.preparation()) {
        std::vector<std::string> fields;
        for (const SourceQuery::Column &column : query.columns())
            fields.push_back(column.name);
        const std::string key =
            query.isBareTable() ? "rowid" : fields[static_cast<std::size_t>(query.keyColumn())];
        m_writer = std::make_unique<TableWriter>(*m_database, std::string(query.table().name),
                                                 std::move(fields), key,
                                                 static_cast<const ChangeObserver *>(this));
        m_writerPreparation = m_rows.preparation();
    }
    return *m_writer;
}

void RecordCursor::Update()
{
    if (m_buffer == Buffer::Closed)
        fail(tr("No row is being added or edited in: %1"));
    const bool isAdding = m_buffer == Buffer::Adding;
    m_buffer = Buffer::Closed;
    m_database->enlist(*this);
    if (isAdding)
        addRow();
    else
        changeRow();
}

void RecordCursor::addRow()
{
    qint64 key = 0;
    m_database->write([&] { key = writer().insert(m_values); });
    m_rows.append(m_values, key);
    m_search.rowAppended();
}

void RecordCursor::changeRow()
{
    const bool writesNothing = std::none_of(m_values.begin(), m_values.end(),
                                            [](const auto &value) { return value.has_value(); });
    if (writesNothing)
        return;
    requireOpenFile();
    m_database->write([this] { writer().update(m_rows.key(m_row), m_values); });
    m_rows.replace(m_row, m_values);
    m_search.clear();
}

void RecordCursor::Delete()
{
    requireRow();
    requireUpdatable();
    readRows();
    m_buffer = Buffer::Closed;
    m_database->enlist(*this);
    requireOpenFile();
    m_database->write([this] { writer().remove(m_rows.key(m_row)); });
    m_rows.erase(m_row);
    m_search.clear();
    m_place = Place::Deleted;
}
