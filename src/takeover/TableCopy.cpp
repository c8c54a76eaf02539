#include "takeover/TableCopy.h"

#include "oldfiles/RecipeFile.h"
#include "takeover/FieldConversion.h"
#include "takeover/RowInsertion.h"
#include "takeover/RowNotes.h"

#include <QCoreApplication>
#include <QLocale>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <optional>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(TableCopy)
};

constexpr qint64 rowsPerStep = 256;

std::optional<qint32> keyOf(const oldfiles::Value &value)
{
    const std::optional<Cell> cell = convertToField(FieldType::Key, value);
    const auto *number = cell ? std::get_if<qint64>(&*cell) : nullptr;
    return number ? std::optional(static_cast<qint32>(*number)) : std::nullopt;
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
                     TakeoverNotes &notes)
    : m_file(file)
    , m_database(database)
    , m_notes(notes)
{
}

bool TableCopy::copy(std::size_t number, const Step &step)
{
    const Table &table = schemaTables()[number];
    if (table.hasKey)
        readKeys(number);
    oldfiles::RowReader rows = m_file.rows(number);
    RowInsertion insertion(m_database.getHandle(), table);
    RowNotes notes(m_notes, m_database, table);
    TakenTable &taken = m_taken[number];
    while (rows.next()) {
        const RowNotes::Row row{taken.taken, rows.values()};
        const qint64 rowid = table.hasKey ? copyKey(number, row, insertion, notes) : row.number + 1;
        for (std::size_t field = table.hasKey ? 1 : 0; field < table.fields.size(); ++field)
            copyField(table, row, field, insertion, notes);
        insertion.insert();
        m_samples[number].offer(row.number, rowid);
        if (++taken.taken % rowsPerStep == 0 && !step(rowsPerStep))
            return false;
    }
    noteResult(number, rows);
    if (table.hasKey)
        setCounter(number);
    return true;
}

void TableCopy::readKeys(std::size_t number)
{
    constexpr std::array<std::size_t, 1> keyColumn = {0};
    oldfiles::RowReader rows = m_file.rows(number, keyColumn);
    while (rows.next())
        m_keys[number].add(keyOf(rows.values()[0]));
    m_keys[number].assign(counterOf(number));
}
