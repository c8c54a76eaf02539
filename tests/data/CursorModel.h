#pragma once

#include "Criterion.h"
#include "RecordCursor.h"

#include <QRegularExpression>

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <stdexcept>

// A row by its fields; "#" is its number in the file.
using Row = QVariantMap;

// Reads rows with plain SQL, on the program's connection, so that open transactions show.
inline QList<Row> rowsOf(Database &database, const QString &select)
{
    QList<Row> rows;
    SQLite::Statement statement(database.connection(), select.toStdString());
    while (statement.executeStep()) {
        Row row;
        for (int i = 0; i < statement.getColumnCount(); ++i) {
            const SQLite::Column column = statement.getColumn(i);
            QVariant value;
            if (column.isInteger())
                value = qint64{column.getInt64()};
            else if (column.isFloat())
                value = column.getDouble();
            else if (column.isText())
                value = QString::fromStdString(column.getString());
            row.insert(QString::fromLatin1(column.getName()), value);
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

// What a RecordCursor has to show: a plain list of rows, read when the first operation needs them.
class CursorModel
{
public:
    CursorModel(Database &database, QString select)
        : m_database(database)
        , m_select(std::move(select))
    {
    }

    bool isTaken() const { return m_taken; }
    bool isOnRow() const { return m_place == Place::On; }
    QVariant currentKey() const { return m_rows[m_at][QStringLiteral("#")]; }

    void take()
    {
        if (m_taken)
            return;
        QList<Row> rows = rowsOf(m_database, m_select);
        rows.removeIf([this](const Row &row) {
            return std::any_of(m_rows.begin(), m_rows.end(), [&row](const Row &added) {
                return added[QStringLiteral("#")] == row[QStringLiteral("#")];
            });
        });
        m_at += rows.size();
        m_rows = rows + m_rows;
        m_taken = true;
        m_touched = false;
        if (m_place == Place::Unasked)
            moveTo(0);
    }

    void moveTo(qsizetype at)
    {
        m_at = m_rows.empty() ? 0 : at;
        m_place = m_at < 0 ? Place::Before : m_at < m_rows.size() ? Place::On : Place::After;
    }

    void moveLast()
    {
        if (m_rows.empty())
            take();
        moveTo(m_rows.size() - 1);
    }

    bool moveNext()
    {
        take();
        if (m_rows.empty() || m_place == Place::After)
            return false;
        moveTo(following());
        return true;
    }

    bool movePrevious()
    {
        take();
        if (m_rows.empty() || m_place == Place::Before)
            return false;
        moveTo((m_place == Place::After ? m_rows.size() : m_at) - 1);
        return true;
    }

    void find(const QString &field, Comparison comparison, const QVariant &value, bool fromStart)
    {
        take();
        qsizetype i = fromStart ? 0 : following();
        while (i < m_rows.size() && !matches(m_rows[i][field], comparison, value))
            ++i;
        m_noMatch = i >= m_rows.size();
        if (!m_noMatch)
            moveTo(i);
    }

    void add(const Row &row) { m_rows.append(row); }

    void edit(const Row &fields)
    {
        m_rows[m_at].insert(fields);
        m_touched = m_touched || !fields.empty();
    }

    void remove()
    {
        take();
        m_rows.removeAt(m_at);
        m_place = Place::Gap;
        m_touched = true;
    }

    // The file has changed in a way that the next requery has to show.
    void touch() { m_touched = true; }

    void forget()
    {
        m_rows.clear();
        m_at = 0;
        m_place = Place::Unasked;
        m_taken = false;
        m_touched = false;
    }

    // Rows that have been touched are read at the next need; others may be kept as they are, so
    // that they are those of this moment.
    void requery()
    {
        const bool mayKeep = m_taken && !m_touched;
        forget();
        if (mayKeep)
            take();
    }

    void compare(RecordCursor &cursor)
    {
        take();
        check(cursor.AtBOF() == (m_rows.empty() || m_place == Place::Before), "BOF");
        check(cursor.AtEOF() == (m_rows.empty() || m_place == Place::After), "EOF");
        check(cursor.RecordCount() == m_rows.size(), "RecordCount");
        check(cursor.NoMatch() == m_noMatch, "NoMatch");
        if (isOnRow())
            compareRow(cursor);
    }

    void compareRow(RecordCursor &cursor) const
    {
        for (auto field = m_rows[m_at].begin(); field != m_rows[m_at].end(); ++field) {
            const QByteArray name = field.key().toLatin1();
            if (name == "#")
                continue;
            const QVariant value = cursor.value(QLatin1StringView(name));
            check(value == *field && value.typeId() == field->typeId(), name.constData());
        }
    }

private:
    enum class Place { Unasked, Before, On, Gap, After };

    qsizetype following() const
    {
        switch (m_place) {
        case Place::On:
            return m_at + 1;
        case Place::Gap:
            return m_at;
        case Place::After:
            return m_rows.size();
        default:
            return 0;
        }
    }

    static bool matches(const QVariant &cell, Comparison comparison, const QVariant &value)
    {
        if (cell.typeId() != value.typeId())
            return false;
        if (comparison == Comparison::Equal)
            return value.typeId() == QMetaType::QString
                ? cell.toString().compare(value.toString(), Qt::CaseInsensitive) == 0
                : cell == value;
        QString pattern = QRegularExpression::escape(value.toString());
        pattern.replace(QStringLiteral("\\*"), QStringLiteral(".*"));
        pattern.replace(QStringLiteral("\\?"), QStringLiteral("."));
        return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                                  QRegularExpression::CaseInsensitiveOption
                                      | QRegularExpression::UseUnicodePropertiesOption)
            .match(cell.toString())
            .hasMatch();
    }

    Database &m_database;
    const QString m_select;
    QList<Row> m_rows;
    qsizetype m_at = 0;
    Place m_place = Place::Unasked;
    bool m_taken = false;
    bool m_touched = false;
    bool m_noMatch = false;
};
