#include "takeover/TableCopy.h"

#include "oldfiles/RecipeFile.h"
#include "takeover/FieldConversion.h"
#include "takeover/RowInsertion.h"
#include "takeover/RowNotes.h"

#include <QCoreApplication>
#include <QLocale>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TableCopy)
};

std::string_view textOf(const oldfiles::Value &value)
{
    const auto *text = std::get_if<std::string_view>(&value);
    return text ? *text : std::string_view();
}

// Returns the number of the catalog whose keys the field of a link table holds.
std::size_t catalogOf(const Field &field)
{
    const auto tables = schemaTables();
    const auto catalog = std::find_if(tables.begin(), tables.end(), [&](const Table &table) {
        return table.hasKey && table.fields[0].name == field.name;
    });
    return static_cast<std::size_t>(catalog - tables.begin());
}

} // namespace

TableCopy::TableCopy(const oldfiles::RecipeFile &file, SQLite::Database &database,
                     CopiedTables &copied, TakeoverNotes &notes)
    : m_file(file)
    , m_database(database)
    , m_copied(copied)
    , m_notes(notes)
{
}

bool TableCopy::copy(std::size_t number, const Step &step)
{
    const Table &table = schemaTables()[number];
    m_emptyLinks = {};
    if (table.hasKey && !readKeys(number, step))
        return false;
    oldfiles::RowReader rows = m_file.rows(number);
    RowInsertion insertion(m_database.getHandle(), table);
    RowNotes notes(m_notes, m_database, table);
    TakenTable &taken = m_copied.taken[number];
    rows.setPageCallback([&, told = qint64{0}]() mutable {
        const qint64 before = std::exchange(told, taken.taken);
        return step(taken.taken - before);
    });
    while (rows.next()) {
        const RowNotes::Row row{taken.taken, rows.values()};
        const qint64 rowid = table.hasKey ? copyKey(number, row, insertion, notes) : row.number + 1;
        for (std::size_t field = table.hasKey ? 1 : 0; field < table.fields.size(); ++field)
            copyField(table, row, field, insertion, notes);
        if (table.hasKey)
            m_copied.names[number].add(textOf(row.values[1]));
        insertion.insert();
        m_copied.samples[number].offer({row.number, rows.place(), rowid});
        ++taken.taken;
    }
    if (rows.isStopped())
        return false;
    noteResult(number, rows);
    noteEmptyLinks(number);
    if (table.hasKey)
        setCounter(number);
    return true;
}

// Returns false if `step` did, like the next function.
bool TableCopy::readKeys(std::size_t number, const Step &step)
{
    constexpr std::array<std::size_t, 1> keyColumn = {0};
    oldfiles::RowReader rows = m_file.rows(number, keyColumn);
    rows.setPageCallback([&] { return step(0); });
    while (rows.next())
        m_keys[number].add(rows.values()[0]);
    if (rows.isStopped() || (m_keys[number].sort() && !reserveLinkedKeys(number, step)))
        return false;
    m_keys[number].assign(counterOf(number));
    return true;
}

bool TableCopy::reserveLinkedKeys(std::size_t catalog, const Step &step)
{
    for (std::size_t links = 0; links < tableCount; ++links) {
        const Table &table = schemaTables()[links];
        for (std::size_t field = 0; field < table.fields.size(); ++field) {
            if (table.hasKey || table.fields[field].type != FieldType::Key
                || catalogOf(table.fields[field]) != catalog)
                continue;
            const std::array column = {field};
            oldfiles::RowReader rows = m_file.rows(links, column);
            rows.setPageCallback([&] { return step(0); });
            while (rows.next())
                m_keys[catalog].reserve(rows.values()[field]);
            if (rows.isStopped())
                return false;
        }
    }
    return true;
}

// Returns 0 if the counter leaves no next key.
qint32 TableCopy::counterOf(std::size_t number) const
{
    const quint32 counter = m_file.lastCounter(number);
    return counter < quint32{CatalogKeys::largestKey} ? static_cast<qint32>(counter) : 0;
}

qint32 TableCopy::copyKey(std::size_t number, const RowNotes::Row &row, RowInsertion &insertion,
                          RowNotes &notes)
{
    const CatalogKeys::Taken taken = m_keys[number].take(row.values[0]);
    if (keyOf(row.values[0]) != taken.key)
        notes.keyReplaced(row, taken.isRepeated, taken.key);
    insertion.bind(0, qint64{taken.key});
    return taken.key;
}

void TableCopy::copyField(const Table &table, const RowNotes::Row &row, std::size_t field,
                          RowInsertion &insertion, RowNotes &notes)
{
    const FieldType type = table.fields[field].type;
    std::optional<Cell> cell = convertToField(type, row.values[field]);
    if (type == FieldType::Key) {
        const auto key = m_keys[catalogOf(table.fields[field])].linked(row.values[field]);
        if (key)
            cell = qint64{*key};
    }
    if (!cell) {
        notes.numberDoesNotFit(row, field);
        cell = Cell();
    }
    if (type == FieldType::Key && std::holds_alternative<std::monostate>(*cell))
        ++m_emptyLinks[field];
    insertion.bind(field, *cell);
}

void TableCopy::noteResult(std::size_t number, const oldfiles::RowReader &rows)
{
    TakenTable &taken = m_copied.taken[number];
    taken.name = displayName(schemaTables()[number].name);
    taken.stated = m_file.statedRows(number);
    taken.damagedRows = rows.unreadableRows();
    taken.damagedPages = rows.unreadablePages();
    if (taken.isDamaged())
        m_notes.add(taken.name, NoteKind::Count, [&] { return rows.firstProblem(); });
    if (taken.stated == 0 && taken.taken > 0)
        m_notes.add(taken.name, NoteKind::Count, [&] {
            return Text::tr(
                       "%1: the old file says that it has no rows, as it may after the program "
                       "was not ended properly. %2 were found and taken over.")
                .arg(taken.name, QLocale(QLocale::English).toString(taken.taken));
        });
}

void TableCopy::noteEmptyLinks(std::size_t number)
{
    const QString &table = m_copied.taken[number].name;
    for (std::size_t i = 0; i < m_emptyLinks.size(); ++i) {
        const qint64 rows = m_emptyLinks[i];
        if (rows == 0)
            continue;
        const QString field = displayName(schemaTables()[number].fields[i].name);
        m_notes.add(table, NoteKind::Link, [&] {
            return rows == 1 ? Text::tr("%1: in one row, the %2 is empty.").arg(table, field)
                             : Text::tr("%1: in %3 rows, the %2 is empty.")
                                   .arg(table, field, QLocale(QLocale::English).toString(rows));
        });
    }
}

// SQLite gives the next row of a catalog a key that is larger than this number and all keys.
void TableCopy::setCounter(std::size_t number)
{
    const Table &table = schemaTables()[number];
    const quint32 counter = m_file.lastCounter(number);
    if (counter >= quint32{CatalogKeys::largestKey})
        m_notes.add(m_copied.taken[number].name, NoteKind::Key, [&] {
            return Text::tr(
                       "%1: the last %2 is said to be %3, which leaves none for new rows. They "
                       "follow on the largest that is in use.")
                .arg(m_copied.taken[number].name, displayName(table.fields[0].name),
                     QString::number(counter));
        });
    const std::string name(table.name);
    SQLite::Statement remove(m_database, "DELETE FROM sqlite_sequence WHERE name = ?");
    remove.bind(1, name);
    remove.exec();
    SQLite::Statement insert(m_database,
                             "INSERT INTO sqlite_sequence (name, seq) SELECT ?1, "
                             "max(?2, (SELECT ifnull(max(rowid), 0) FROM "
                                 + name + "))");
    insert.bind(1, name);
    insert.bind(2, counterOf(number));
    insert.exec();
}
