#include "takeover/NameNotes.h"

#include "data/TextComparison.h"
#include "interaction/ControlCharacters.h"
#include "platform/Utf8.h"
#include "takeover/RowNotes.h"

#include <QCoreApplication>
#include <QLocale>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(NameNotes)
};

QString number(qint64 value)
{
    return QLocale(QLocale::English).toString(value);
}

QString name(const SQLite::Column &column)
{
    return excerpt(platform::decodeUtf8(column.getString()));
}

// Runs a query in which the words TABLE, KEY and NAME mean those of a catalog, and calls `take` for
// each row.
template <typename Take>
void forEachRow(SQLite::Database &connection, const Table &table, QString query, Take take)
{
    query.replace("TABLE"_L1, displayName(table.name))
        .replace("KEY"_L1, displayName(table.fields[0].name))
        .replace("NAME"_L1, displayName(table.fields[1].name));
    SQLite::Statement statement(connection, query.toStdString());
    while (statement.executeStep())
        take(statement);
}

void noteMissingNames(SQLite::Database &connection, const Table &table, TakeoverNotes &notes)
{
    const QString query = u"SELECT KEY FROM TABLE WHERE NAME IS NULL OR NAME = ''"_s;
    forEachRow(connection, table, query, [&](SQLite::Statement &row) {
        notes.add(displayName(table.name), NoteKind::Name, [&] {
            return Text::tr("%1: the row with the %2 %3 has no name.")
                .arg(displayName(table.name), displayName(table.fields[0].name),
                     QString::number(row.getColumn(0).getInt64()));
        });
    });
}

QString repeatedName(const Table &table, SQLite::Statement &row)
{
    const QString first = name(row.getColumn(1));
    const QString last = name(row.getColumn(2));
    const QString rows = number(row.getColumn(0).getInt64());
    if (first == last)
        return Text::tr("%1: %2 rows have the name \"%3\".")
            .arg(displayName(table.name), rows, first);
    return Text::tr("%1: %2 rows have names that differ only in letter case, such as \"%3\" and "
                    "\"%4\".")
        .arg(displayName(table.name), rows, first, last);
}

void noteRepeatedNames(SQLite::Database &connection, const Table &table, TakeoverNotes &notes)
{
    const QString query =
        u"SELECT count(*), min(NAME COLLATE BINARY), max(NAME COLLATE BINARY) FROM TABLE "
        "WHERE NAME <> '' GROUP BY NAME HAVING count(*) > 1"_s;
    forEachRow(connection, table, query, [&](SQLite::Statement &row) {
        notes.add(displayName(table.name), NoteKind::Name,
                  [&] { return repeatedName(table, row); });
    });
}

} // namespace

void NameHashes::add(std::string_view name)
{
    if (name.empty())
        m_isNameMissing = true;
    else
        m_hashes.push_back(textHash(name));
}

bool NameHashes::needNotes()
{
    std::sort(m_hashes.begin(), m_hashes.end());
    return m_isNameMissing
        || std::adjacent_find(m_hashes.begin(), m_hashes.end()) != m_hashes.end();
}

void noteNames(SQLite::Database &connection, const Table &catalog, TakeoverNotes &notes)
{
    noteMissingNames(connection, catalog, notes);
    noteRepeatedNames(connection, catalog, notes);
}
