#pragma once

#include "data/ColumnIndex.h"
#include "data/Database.h"
#include "data/SourceQuery.h"
#include "data/TableWriter.h"

#include <QVariant>

#include <memory>
#include <optional>

// What a field reads: null is an invalid variant, text a QString, a blob a QByteArray.
QVariant toVariant(const Cell &cell);

// An ordered set of rows with a position, a search result and an edit buffer. It shows the rows as
// they were when they were read, and behind them those that were added through it; what others
// write shows after a requery. Rows are read by the first operation that needs them (those marked
// "reads"), not by opening and not by a requery. All failures are thrown as DatabaseError; a
// failing operation leaves rows and position as they were.
class RecordCursor final : private TransactionParticipant
{
public:
    // Checks the source and reads nothing. The source's text must outlive the cursor; a requery
    // runs the text that it has then.
    RecordCursor(std::shared_ptr<Database> database, const QString &recordSource);
    RecordCursor(std::shared_ptr<Database> database, QString &&recordSource) = delete;
    ~RecordCursor();

    // Moves read. Moving on from where there is no row is an error; so is leaving the rows twice.
    void MoveFirst();
    void MoveLast(); // reads nothing where rows have been added
    void MoveNext();
    void MovePrevious();

    // Before the first row, behind the last one; both in an empty set, in which a row that is added
    // then comes in front of the position. They read.
    bool AtBOF();
    bool AtEOF();

    // Searches read. FindFirst starts at the first row, FindNext behind the current one. Where no
    // row satisfies the criterion (see Criterion.h), NoMatch is set and the position stays.
    void FindFirst(const QString &criteria);
    void FindNext(const QString &criteria);
    bool NoMatch() const { return m_noMatch; }

    // The exact number of rows. Reads.
    qsizetype RecordCount();

    // AddNew opens an empty edit buffer, Edit one on the current row. Moves and searches drop it.
    void AddNew();
    void Edit();

    // Writes the buffer to the file. An added row comes last; the position stays as it was.
    void Update();

    // Deletes the current row from the file. There is none then until the next move or search; the
    // next row is the one that followed.
    void Delete();

    // Takes the rows afresh where anything has changed, and stands on the first one.
    void Requery();

    // The field of the current row, of the type that it was stored with; null is an invalid
    // variant. Reads.
    QVariant value(QLatin1StringView field);

    // For lists, which show any row without moving to it: the cell of a row, from 0, in a column.
    // Its text stays where it is until the next requery, edit or delete. They read.
    int columnNumber(QLatin1StringView field);
    Cell cellAt(qsizetype row, int column);

    // How often the rows have been taken from the file. What was made from them is good for as long
    // as the number stays and nothing is written through this cursor.
    int generation() const { return m_generation; }

    // Into the open edit buffer. Throws where the field does not take the value, see FieldValue.h.
    void setValue(QLatin1StringView field, const QVariant &value);

private:
    // Where the cursor stands. Deleted: in front of the row with the number m_row.
    enum class Place { Unset, BeforeFirst, OnRow, Deleted, AfterLast };
    enum class Buffer { Closed, Adding, Editing };

    // How a column has been searched, and its index once that has paid off.
    struct SearchedColumn {
        int column;
        bool isText;
        qsizetype scannedRows = 0;
        std::optional<ColumnIndex> index;
    };

    // The last criterion, which a walk with FindNext asks for again and again.
    struct Search {
        QString criteria;
        int column = 0;
        bool isPattern = false;
        SearchKey key{qint64{0}};
    };

    void transactionRolledBack() override;

    void readRows();
    std::vector<RowStore::Row> runSource();
    void discardRows();
    bool isUnchanged();
    qsizetype rowCount() const { return static_cast<qsizetype>(m_rows.size()); }
    RowStore::Row row(qsizetype number) const { return m_rows[static_cast<std::size_t>(number)]; }

    [[noreturn]] void fail(const char *text) const;
    void requireRow();
    void moveTo(qsizetype row);
    void setPosition(qsizetype row);
    qsizetype nextRow() const;

    void search(const QString &criteria, qsizetype from);
    void prepareSearch(const QString &criteria);
    qsizetype find(qsizetype from);
    qsizetype scan(qsizetype from) const;

    void openBuffer(Buffer buffer);
    TableWriter &writer();
    void addRow();
    void changeRow();
    RowStore::Row storedRow(RowStore::Row old, qint64 key);

    const std::shared_ptr<Database> m_database;
    const QString &m_recordSource;
    SourceQuery m_query;

    RowStore m_store;
    std::vector<RowStore::Row> m_rows; // as long as m_isRead is not set, the added ones alone
    std::vector<SearchedColumn> m_searched;
    bool m_isRead = false;
    int m_generation = 0;
    int m_versionRead = 0;
    TableChanges m_changesRead{}; // up to what the rows are known to be true
    qint64 m_lastKey = 0; // of the last row of a bare table
    bool m_addedOutOfPlace = false; // a row that would not stand last if the source were run again

    Place m_place = Place::Unset;
    qsizetype m_row = 0;
    bool m_noMatch = false;
    Search m_search;

    Buffer m_buffer = Buffer::Closed;
    TableWriter::Values m_values;
    std::unique_ptr<TableWriter> m_writer;
};
