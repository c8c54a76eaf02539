#include "takeover/NewFileCheck.h"

#include "oldfiles/RecipeFile.h"
#include "platform/UserVisibleError.h"

#include <QCoreApplication>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(NewFileCheck)
};

void require(bool condition, const QString &table)
{
    if (!condition)
        throw platform::UserVisibleError(
            Text::tr("The new recipe database is not what was written: the check of %1 has failed. "
                     "Nothing was taken over. Check the disk and try again.")
                .arg(table));
}

QString quickCheck(SQLite::Database &connection)
{
    return QString::fromStdString(connection.execAndGet("PRAGMA quick_check(1)").getString());
}

std::vector<std::size_t> textFields(const Table &table)
{
    std::vector<std::size_t> fields;
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
        if (table.fields[i].type == FieldType::Text)
            fields.push_back(i);
    }
    return fields;
}

std::string selectText(const Table &table, const std::vector<std::size_t> &fields)
{
    std::string names;
    for (const std::size_t field : fields)
        names.append(names.empty() ? "" : ", ").append(table.fields[field].name);
    return "SELECT " + names + " FROM " + std::string(table.name) + " WHERE rowid = ?";
}

bool isSameText(const oldfiles::Value &value, const SQLite::Column &stored)
{
    if (const auto *text = std::get_if<std::string_view>(&value))
        return stored.isText() && stored.getString() == *text;
    return stored.isNull();
}

bool hasTexts(SQLite::Statement &select, qint64 rowid, std::span<const oldfiles::Value> row,
              const std::vector<std::size_t> &fields)
{
    select.reset();
    select.bind(1, static_cast<int64_t>(rowid));
    if (!select.executeStep())
        return false;
    int column = 0;
    return std::all_of(fields.begin(), fields.end(), [&](std::size_t field) {
        return isSameText(row[field], select.getColumn(column++));
    });
}

} // namespace

bool checkNewFile(SQLite::Database &connection, const oldfiles::RecipeFile &oldFile,
                  const CopiedTables &copied, const std::function<bool()> &step)
{
    require(quickCheck(connection) == "ok"_L1, Text::tr("the file"));
    for (std::size_t i = 0; i < tableCount; ++i) {
        const Table &table = schemaTables()[i];
        const TakenTable &taken = copied.taken[i];
        const int64_t count =
            connection.execAndGet("SELECT count(*) FROM " + std::string(table.name)).getInt64();
        require(count == taken.taken, taken.name);

        const std::vector<std::size_t> fields = textFields(table);
        if (fields.empty())
            continue;
        SQLite::Statement select(connection, selectText(table, fields));
        oldfiles::RowReader rows = oldFile.rows(i, fields);
        for (const RowSample::Row &row : copied.samples[i].rows()) {
            if (!step())
                return false;
            require(rows.goTo(row.place) && hasTexts(select, row.rowid, rows.values(), fields),
                    taken.name);
        }
    }
    return true;
}
