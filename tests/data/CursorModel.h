#pragma once

#include "data/RecordCursor.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <stdexcept>

// The values of a row by field name; "#" is its rowid.
using Row = QVariantMap;

// Reads rows with plain SQL on the program's connection, so that changes in an open transaction
// show.
inline QList<Row> rowsOf(Database &database, const QString &select)
{
    QList<Row> rows;
    SQLite::Statement statement(database.connection(), select.toStdString());
    while (statement.executeStep()) {
        Row row;
        for (int i = 0; i < statement.getColumnCount(); ++i) {
            const SQLite::Column column = statement.getColumn(i);
            QVariant &value = row[QString::fromLatin1(column.getName())];
            if (column.isInteger())
                value = qint64{column.getInt64()};
            else if (column.isFloat())
                value = column.getDouble();
            else if (column.isText())
                value = QString::fromStdString(column.getString());
        }
        rows.append(row);
    }
    return rows;
}

inline void check(bool holds, const char *what)
{
    if (!holds)
        throw std::runtime_error(what);
}

// What a cursor must show: a plain list of rows and a position in it.
class CursorModel
{
public:
    bool isEmpty() const { return m_rows.empty(); }
    bool isOnRow() const { return m_place == Place::On; }
    Row &current() { return m_rows[m_at]; }

    void setRows(const QList<Row> &rows)
    {
        m_rows = rows;
        moveTo(0);
    }

    void moveTo(qsizetype at)
    {
        m_at = m_rows.empty() ? 0 : at;
        m_place = m_at < 0 ? Place::Before : m_at < m_rows.size() ? Place::On : Place::After;
    }

    void moveLast() { moveTo(m_rows.size() - 1); }

    bool moveNext()
    {
        const bool moves = !m_rows.empty() && m_place != Place::After;
        if (moves)
            moveTo(nextRow());
        return moves;
    }

    bool movePrevious()
    {
        const bool moves = !m_rows.empty() && m_place != Place::Before;
        if (moves)
            moveTo((m_place == Place::After ? m_rows.size() : m_at) - 1);
        return moves;
    }

    template <typename Predicate>
    void find(bool fromStart, Predicate matches)
    {
        const auto from = m_rows.begin() + (fromStart ? 0 : nextRow());
        const auto found = std::find_if(from, m_rows.end(), matches);
        m_noMatch = found == m_rows.end();
        if (!m_noMatch)
            moveTo(found - m_rows.begin());
    }

    void add(const Row &row) { m_rows.append(row); }

    void remove()
    {
        m_rows.removeAt(m_at);
        m_place = Place::Gap;
    }

    void compare(RecordCursor &cursor) const
    {
        check(cursor.AtBOF() == (m_rows.empty() || m_place == Place::Before), "BOF");
        check(cursor.AtEOF() == (m_rows.empty() || m_place == Place::After), "EOF");
        check(cursor.RecordCount() == m_rows.size(), "RecordCount");
        check(cursor.NoMatch() == m_noMatch, "NoMatch");
        const Row row = isOnRow() ? m_rows[m_at] : Row();
        for (auto field = row.begin(); field != row.end(); ++field) {
            const QByteArray name = field.key().toLatin1();
            if (name == "#")
                continue;
            const QVariant value = cursor.value(QLatin1StringView(name));
            check(value == *field && value.typeId() == field->typeId(), name.constData());
        }
    }

private:
    enum class Place { Before, On, Gap, After }; // Gap: before the row m_at

    qsizetype nextRow() const
    {
        return m_place == Place::Before ? 0
            : m_place == Place::After   ? m_rows.size()
            : m_place == Place::On      ? m_at + 1
                                        : m_at;
    }

    QList<Row> m_rows;
    qsizetype m_at = 0;
    Place m_place = Place::After;
    bool m_noMatch = false;
};
