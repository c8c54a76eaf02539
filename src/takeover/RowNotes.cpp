#include "takeover/RowNotes.h"

#include "interaction/ControlCharacters.h"
#include "platform/Utf8.h"
#include "takeover/FieldConversion.h"

#include <QCoreApplication>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RowNotes)
};

QString inQuotes(std::string_view name)
{
    return u'"' + excerpt(platform::decodeUtf8(name)) + u'"';
}

QString unnamed(const RowNotes::Row &row)
{
    return Text::tr("row %1").arg(row.number + 1);
}

} // namespace

QString displayName(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

RowNotes::RowNotes(TakeoverNotes &notes, SQLite::Database &database, const Table &table)
    : m_notes(notes)
    , m_database(database)
    , m_table(table)
    , m_name(displayName(table.name))
{
}

void RowNotes::numberDoesNotFit(const Row &row, std::size_t field)
{
    m_notes.add(m_name, NoteKind::Number, [&] {
        return Text::tr("%1: the %2 of %3 was %4, which does not fit. It is empty now.")
            .arg(m_name, displayName(m_table.fields[field].name), label(row),
                 displayNumber(row.values[field]));
    });
}

void RowNotes::keyReplaced(const Row &row, bool isTakenByEarlierRow, qint32 newKey)
{
    m_notes.add(m_name, NoteKind::Key,
                [&] { return keySentence(row, isTakenByEarlierRow, newKey); });
}

QString RowNotes::keySentence(const Row &row, bool isTakenByEarlierRow, qint32 newKey) const
{
    const QString field = displayName(m_table.fields[0].name);
    const QString oldKey = displayNumber(row.values[0]);
    if (oldKey.isEmpty())
        return Text::tr("%1: %2 had no %3. It has the %3 %4 now.")
            .arg(m_name, label(row), field, QString::number(newKey));
    if (isTakenByEarlierRow)
        return Text::tr("%1: %2 had the same %3 as another row, %4. It has the %3 %5 now. What "
                        "refers to %4 means the other row.")
            .arg(m_name, label(row), field, oldKey, QString::number(newKey));
    return Text::tr("%1: %2 had the %3 %4. It has the %3 %5 now, also in the rows that refer to "
                    "it.")
        .arg(m_name, label(row), field, oldKey, QString::number(newKey));
}

QString RowNotes::label(const Row &row) const
{
    if (!m_table.hasKey)
        return recipeOf(row);
    const auto *name = std::get_if<std::string_view>(&row.values[1]);
    return name && !name->empty() ? inQuotes(*name) : unnamed(row);
}

QString RowNotes::recipeOf(const Row &row) const
{
    if (const std::optional<qint32> recipe = keyOf(row.values[0])) {
        SQLite::Statement title(m_database, "SELECT RecipeName FROM Recipes WHERE RecipeID = ?");
        title.bind(1, *recipe);
        if (title.executeStep() && !title.getColumn(0).getString().empty())
            return Text::tr("row %1, of the recipe %2,")
                .arg(QString::number(row.number + 1), inQuotes(title.getColumn(0).getString()));
    }
    return unnamed(row);
}
