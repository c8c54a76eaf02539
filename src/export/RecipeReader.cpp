#include "export/RecipeReader.h"

#include "data/Database.h"
#include "data/FieldValue.h"
#include "data/RowSet.h"
#include "data/TypesAndRatings.h"
#include "data/settings/Settings.h"
#include "export/ExportError.h"
#include "export/PageText.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RecipeReader)
};

// The rows of a statement. Columns are numbered from 0.
class Rows
{
public:
    Rows(Database &database, const QString &statement)
        : m_rows(database, statement)
    {
        m_rows.read();
    }

    qsizetype count() const { return m_rows.size(); }
    qint64 integer(qsizetype row, int column) const { return m_rows.integer(row, column); }

    QString text(qsizetype row, int column) const
    {
        return displayText(toVariant(m_rows.cell(row, column)));
    }

    // Returns a stored index into a list of `count` texts: `ifNull` for null, nothing if it is out
    // of range.
    std::optional<int> listIndex(qsizetype row, int column, qsizetype count, int ifNull) const
    {
        const Cell cell = m_rows.cell(row, column);
        if (cell == Cell())
            return ifNull;
        const auto *index = std::get_if<qint64>(&cell);
        if (index == nullptr || *index < 0 || *index >= count)
            return {};
        return static_cast<int>(*index);
    }

    bool isYes(qsizetype row, int column) const
    {
        return toVariant(m_rows.cell(row, column)).toBool();
    }

private:
    RowSet m_rows;
};

QString servingsOf(const QString &stored)
{
    return stored == u"0" ? QString() : pageLine(stored);
}

// A recipe whose type is unknown is shown with those that have none.
int typeIn(const Rows &rows, qsizetype row, int column, qsizetype types)
{
    return rows.listIndex(row, column, types, defaultRecipeType).value_or(defaultRecipeType);
}

[[noreturn]] void failAsChanged()
{
    throw ExportError(Text::tr(
        "Another program has changed the recipes during the export. Nothing was exported, and "
        "earlier pages are as they were. Export again when the other program has finished."));
}

// The recipes with some keys, whose details are read by one statement for each table.
struct Batch {
    Database &database;
    std::span<const qint64> keys;
    std::vector<RecipeDetails> details;

    Rows rows(const QString &statement) const
    {
        return {database, statement.arg(keys.front()).arg(keys.back())};
    }

    RecipeDetails &ofKey(qint64 key)
    {
        const auto found = std::lower_bound(keys.begin(), keys.end(), key);
        if (found == keys.end() || *found != key)
            failAsChanged();
        return details[static_cast<std::size_t>(found - keys.begin())];
    }
};

void readRecipes(Batch &batch)
{
    const Rows rows =
        batch.rows(u"SELECT RecipeID, RecipeName, RecipeType, Author, Serves, Rating, "
                   "Description, Instructions FROM Recipes "
                   "WHERE RecipeID BETWEEN %1 AND %2"_s);
    if (rows.count() != std::ssize(batch.keys))
        failAsChanged();
    const QStringList types = recipeTypes();
    const QStringList ratings = recipeRatings();
    for (qsizetype row = 0; row < rows.count(); ++row) {
        RecipeDetails &details = batch.ofKey(rows.integer(row, 0));
        details.title = pageTitle(rows.text(row, 1));
        details.type = types[typeIn(rows, row, 2, types.size())];
        details.author = pageLine(rows.text(row, 3));
        details.servings = servingsOf(rows.text(row, 4));
        details.rating = rows.listIndex(row, 5, ratings.size(), defaultRating).value_or(0);
        if (details.rating > 0)
            details.ratingText = ratings[details.rating];
        details.description = pageParagraphs(rows.text(row, 6));
        details.instructions = pageParagraphs(rows.text(row, 7));
    }
}

void readIngredients(Batch &batch)
{
    const Rows rows =
        batch.rows(inLinkOrder(u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, "
                               "Ingredients.IngredientName, Ingredients.Vegetarian "
                               "FROM Ingredients INNER JOIN RecipeIngredients "
                               "ON Ingredients.IngredientID = RecipeIngredients.IngredientID "
                               "WHERE RecipeIngredients.RecipeID BETWEEN %1 AND %2"_s,
                               "RecipeIngredients"_L1));
    for (qsizetype row = 0; row < rows.count(); ++row) {
        RecipeDetails &details = batch.ofKey(rows.integer(row, 0));
        details.vegetarian = details.vegetarian && rows.isYes(row, 3);
        details.ingredients.append({pageLine(rows.text(row, 1)), pageLine(rows.text(row, 2))});
    }
}

void readUtensils(Batch &batch)
{
    const Rows rows =
        batch.rows(inLinkOrder(u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName "
                               "FROM Utensils INNER JOIN RecipeUtensils "
                               "ON Utensils.UtensilID = RecipeUtensils.UtensilID "
                               "WHERE RecipeUtensils.RecipeID BETWEEN %1 AND %2"_s,
                               "RecipeUtensils"_L1));
    for (qsizetype row = 0; row < rows.count(); ++row)
        batch.ofKey(rows.integer(row, 0)).utensils += pageLine(rows.text(row, 1));
}

std::vector<RecipeEntry> readEntries(Database &database)
{
    const Rows rows(database,
                    u"SELECT RecipeID, RecipeName, RecipeType FROM Recipes ORDER BY"_s
                        + recipeOrderByClause());
    const qsizetype types = recipeTypes().size();
    std::vector<RecipeEntry> entries;
    entries.reserve(static_cast<std::size_t>(rows.count()));
    for (qsizetype row = 0; row < rows.count(); ++row)
        entries.push_back({.key = rows.integer(row, 0),
                           .title = rows.text(row, 1).toStdString(),
                           .type = typeIn(rows, row, 2, types)});
    return entries;
}

// Also returns the keys of the ingredients that are not vegetarian.
std::vector<ListEntry> readIngredientEntries(Database &database, QSet<qint64> &notVegetarian)
{
    const Rows rows(database,
                    u"SELECT IngredientID, IngredientName, IngredientType, Vegetarian "
                    "FROM Ingredients ORDER BY IngredientID"_s);
    const qsizetype types = ingredientTypes().size();
    std::vector<ListEntry> entries;
    for (qsizetype row = 0; row < rows.count(); ++row) {
        entries.push_back({.key = rows.integer(row, 0),
                           .name = rows.text(row, 1).toStdString(),
                           .type = rows.listIndex(row, 2, types, 0).value_or(0)});
        if (!rows.isYes(row, 3))
            notVegetarian.insert(entries.back().key);
    }
    return entries;
}

std::vector<ListEntry> readUtensilEntries(Database &database)
{
    const Rows rows(database, u"SELECT UtensilID, UtensilName FROM Utensils ORDER BY UtensilID"_s);
    std::vector<ListEntry> entries;
    for (qsizetype row = 0; row < rows.count(); ++row)
        entries.push_back({.key = rows.integer(row, 0), .name = rows.text(row, 1).toStdString()});
    return entries;
}

// Adds the recipes to the entries that they use, and removes the entries that no recipe uses. The
// rows are keys of a recipe and an entry. Either may be missing in its table.
void readLinks(const Rows &rows, const QHash<qint64, RecipePosition> &positions,
               std::vector<ListEntry> &entries)
{
    QHash<qint64, std::size_t> numbers;
    for (const ListEntry &entry : entries)
        numbers.insert(entry.key, static_cast<std::size_t>(numbers.size()));
    for (qsizetype row = 0; row < rows.count(); ++row) {
        const auto recipe = positions.constFind(rows.integer(row, 0));
        const auto entry = numbers.constFind(rows.integer(row, 1));
        if (recipe != positions.cend() && entry != numbers.cend())
            entries[*entry].recipes.push_back(*recipe);
    }
    std::erase_if(entries, [](const ListEntry &entry) { return entry.recipes.empty(); });
}

} // namespace

RecipeReader::RecipeReader(const QString &databasePath)
    : m_database(Database::open(databasePath))
{
}

SiteContents RecipeReader::entries()
{
    const ReadTransaction snapshot(*m_database);
    m_version = m_database->dataVersion();
    SiteContents contents;
    contents.recipes = readEntries(*m_database);
    QHash<qint64, RecipePosition> positions;
    positions.reserve(std::ssize(contents.recipes));
    for (const RecipeEntry &recipe : contents.recipes)
        positions.insert(recipe.key, static_cast<RecipePosition>(positions.size()));

    QSet<qint64> meat;
    contents.ingredients = readIngredientEntries(*m_database, meat);
    readLinks({*m_database, u"SELECT RecipeID, IngredientID FROM RecipeIngredients"_s}, positions,
              contents.ingredients);
    for (const ListEntry &ingredient : contents.ingredients) {
        if (meat.contains(ingredient.key)) {
            for (const RecipePosition recipe : ingredient.recipes)
                contents.recipes[recipe].vegetarian = false;
        }
    }
    contents.utensils = readUtensilEntries(*m_database);
    readLinks({*m_database, u"SELECT RecipeID, UtensilID FROM RecipeUtensils"_s}, positions,
              contents.utensils);
    return contents;
}

std::vector<RecipeDetails> RecipeReader::details(std::span<const qint64> keys)
{
    const ReadTransaction snapshot(*m_database);
    if (m_database->dataVersion() != m_version)
        failAsChanged();
    Batch batch{*m_database, keys, std::vector<RecipeDetails>(keys.size())};
    readRecipes(batch);
    readIngredients(batch);
    readUtensils(batch);
    return std::move(batch.details);
}
