#pragma once

#include "data/KeyedRows.h"
#include "data/RowSearch.h"
#include "data/RowSet.h"
#include "data/TableWriter.h"

#include <QCoreApplication>
#include <QVariant>

#include <memory>

// A row set with a position, the result of the last search and an edit buffer. Rows that are added
// through the cursor come last; what others write shows after a requery. Neither opening nor
// requerying reads rows: the first operation that needs them does, and each function below says
// whether it is one of these. All failures are thrown as DatabaseError; an operation that fails
// leaves rows and position as they were.
//
// A search for a recipe or its lines by RecipeID reads only these rows as long as no other
// operation has read all of them. If another program commits between the requery and such a search,
// the search can find the newer rows. The rows found last stay until all are read, and what this
// program writes is never seen before the next requery: the cursor reads all rows before such a
// change. The same holds for long texts (see Schema.h), each of which is read from the file when it
// is needed.
class RecordCursor final : private TransactionParticipant, private ChangeObserver
{
    Q_DECLARE_TR_FUNCTIONS(RecordCursor)

public:
    // Checks the source and reads nothing. The source's text must outlive the cursor; a requery
    // uses the text that it has by then.
    RecordCursor(std::shared_ptr<Database> database, const QString &recordSource);
    RecordCursor(std::shared_ptr<Database> database, QString &&recordSource) = delete;
    ~RecordCursor();

    // The moves read, except for MoveLast() after a row has been added. MoveNext() at AtEOF() and
    // MovePrevious() at AtBOF() fail.
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    // Whether the position is before the first row or after the last one. Both are true for an
    // empty set; a row that is added then lies before the position. They read.
    bool AtBOF();
    bool AtEOF();

    // FindFirst() searches from the first row on, FindNext() from the row after the current one.
    // If no row satisfies the criterion (see Criterion.h), NoMatch() is true and the position
    // stays. They read: all rows, or those of one recipe if the criterion is a text. One that
    // is not given as text need not be parsed.
    void FindFirst(const QString &criteria);
    void FindFirst(Criterion criterion);
    void FindNext(const QString &criteria);
    bool NoMatch() const { return m_noMatch; }

    // The exact number of rows. Reads.
    qsizetype RecordCount();

    // AddNew() opens an empty edit buffer, Edit() one for the current row. Moves, searches,
    // Delete() and Requery() discard the buffer.
    void AddNew();
    void Edit();

    // Writes the buffer to the file. The position stays as it was.
    void Update();

    // Deletes the current row from the file. Afterwards there is no current row until the next move
    // or search; MoveNext() goes to the row that followed the deleted one. Reads.
    void Delete();

    // Drops the rows if the file or the source's text has changed, and moves to the first row.
    void Requery();

    // To be called when the rows are not needed until the next requery. The cursor still works, but
    // no longer reads all rows because of a change: it drops them, and may then show the change.
    void suspend() { m_isSuspended = true; }

    // The field of the current row, with the type that it was stored with; null is an invalid
    // variant. Reads, unless a search has found the row. Throws RowNotFound for a long text if
    // another program has deleted the row.
    QVariant value(QLatin1StringView field);

    // For updatable sources: what identifies the current row in its table. Reads.
    qint64 key();

    // Sets a field in the edit buffer. Fails if the field does not accept the value, see
    // convertToField(). The text of the second overload is UTF-8.
    void setValue(QLatin1StringView field, const QVariant &value);
    void setValue(QLatin1StringView field, std::string_view text);

    // Sets a key field in the edit buffer, which accepts every key.
    void setKey(QLatin1StringView field, qint64 key);

    // The rows for lists, which show any row without moving to it. Reads. The rows are valid until
    // the next requery; the set, as long as the cursor.
    const RowSet &rows();

private:
    // Deleted: before the row with the number m_row.
    // OnKeyedRow: on the current row of m_keyedRows; the number m_row has no meaning.
    enum class Place { Unset, BeforeFirst, OnRow, Deleted, AfterLast, OnKeyedRow };
    enum class Buffer { Closed, Adding, Editing };

    void transactionRolledBack() override;
    void aboutToChange(const TableChange &change) override;

    void readRows();
    void dropRows();

    [[noreturn]] void fail(const QString &text) const;
    void requireRow();
    void requireUpdatable() const;
    void requireOpenFile() const;
    void moveTo(qsizetype row);
    void setPosition(qsizetype row);
    qsizetype nextRow() const;
    bool findInKeyedRows(std::optional<bool> isFound);
    template <typename Criteria>
    void find(Criteria &&criteria, qsizetype from);

    std::size_t writtenColumn(QLatin1StringView field) const;
    FieldType typeOf(std::size_t column) const { return m_rows.query().columns()[column].type; }
    [[noreturn]] static void failForValue(QLatin1StringView field, const QString &value);
    void openBuffer(Buffer buffer);
    TableWriter &writer();
    void addRow();
    void changeRow();

    const std::shared_ptr<Database> m_database;
    const QString &m_recordSource;
    RowSet m_rows;

    Place m_place = Place::Unset;
    qsizetype m_row = 0;
    bool m_isSuspended = false;

    KeyedRows m_keyedRows{m_rows};
    RowSearch m_search{m_rows};
    bool m_noMatch = false;

    Buffer m_buffer = Buffer::Closed;
    FieldValues m_values;
    std::unique_ptr<TableWriter> m_writer;
    int m_writerPreparation = 0; // the preparation of the source that it was made for
};
