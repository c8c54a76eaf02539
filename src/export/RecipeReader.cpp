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

    std::string line(qsizetype row, int column) const
    {
        return pageLine(utf8(m_rows.cell(row, column)));
    }

    std::vector<std::string> paragraphs(qsizetype row, int column) const
    {
        return pageParagraphs(utf8(m_rows.cell(row, column)));
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
        const Cell cell = m_rows.cell(row, column);
        const auto *number = std::get_if<qint64>(&cell);
        return number != nullptr ? *number != 0 : toVariant(cell).toBool();
    }

private:
    // Returns the text of the cell, which is valid until the next call.
    std::string_view utf8(const Cell &cell) const
    {
        if (const auto *text = std::get_if<std::string_view>(&cell))
            return *text;
        m_converted = displayText(toVariant(cell)).toStdString();
        return m_converted;
    }

    RowSet m_rows;
    mutable std::string m_converted; // the text of a cell that holds no text
};

std::string servingsOf(std::string &&line)
{
    return line == "0" ? std::string() : std::move(line);
}

// Returns 0 for the worst rating: every imported recipe has it, until somebody rates the recipe.
int ratingOf(const Rows &rows, qsizetype row, int column)
{
    const auto ratings = recipeRatings().size();
    const int rating = rows.listIndex(row, column, ratings, defaultRating).value_or(0);
    return rating == defaultRating ? 0 : rating;
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
    const Rows rows = batch.rows(u"SELECT RecipeID, Author, Serves, Rating, "
                                 "Description, Instructions FROM Recipes "
                                 "WHERE RecipeID BETWEEN %1 AND %2"_s);
    if (rows.count() != std::ssize(batch.keys))
        failAsChanged();
    for (qsizetype row = 0; row < rows.count(); ++row) {
        RecipeDetails &details = batch.ofKey(rows.integer(row, 0));
        details.author = rows.line(row, 1);
        details.servings = servingsOf(rows.line(row, 2));
        details.rating = ratingOf(rows, row, 3);
        details.description = rows.paragraphs(row, 4);
        details.instructions = rows.paragraphs(row, 5);
    }
}

// The lines of a recipe are in the order in which they were stored.
void readIngredients(Batch &batch, const SiteMap &site)
{
    const Rows rows = batch.rows(u"SELECT RecipeID, IngredientID, Quantity FROM RecipeIngredients "
                                 "WHERE RecipeID BETWEEN %1 AND %2 ORDER BY RecipeID, rowid"_s);
    for (qsizetype row = 0; row < rows.count(); ++row) {
        RecipeDetails &details = batch.ofKey(rows.integer(row, 0));
        if (const ListEntry *ingredient = site.ingredient(rows.integer(row, 1)))
            details.ingredients.push_back({ingredient, rows.line(row, 2)});
    }
}

void readUtensils(Batch &batch, const SiteMap &site)
{
    const Rows rows = batch.rows(u"SELECT RecipeID, UtensilID FROM RecipeUtensils "
                                 "WHERE RecipeID BETWEEN %1 AND %2 ORDER BY RecipeID, rowid"_s);
    for (qsizetype row = 0; row < rows.count(); ++row) {
        RecipeDetails &details = batch.ofKey(rows.integer(row, 0));
        if (const ListEntry *utensil = site.utensil(rows.integer(row, 1)))
            details.utensils.push_back(utensil);
    }
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

void setVegetarian(SiteContents &contents, const QSet<qint64> &notVegetarian)
{
    for (const bool isVegetarian : {true, false}) { // one such ingredient overrules all others
        for (const ListEntry &ingredient : contents.ingredients) {
            if (notVegetarian.contains(ingredient.key) == isVegetarian)
                continue;
            for (const RecipePosition recipe : ingredient.recipes)
                contents.recipes[recipe].vegetarian = isVegetarian;
        }
    }
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

    QSet<qint64> notVegetarian;
    contents.ingredients = readIngredientEntries(*m_database, notVegetarian);
    readLinks({*m_database, u"SELECT RecipeID, IngredientID FROM RecipeIngredients"_s}, positions,
              contents.ingredients);
    setVegetarian(contents, notVegetarian);
    contents.utensils = readUtensilEntries(*m_database);
    readLinks({*m_database, u"SELECT RecipeID, UtensilID FROM RecipeUtensils"_s}, positions,
              contents.utensils);
    return contents;
}

std::vector<RecipeDetails> RecipeReader::details(const SiteMap &site, std::span<const qint64> keys)
{
    const ReadTransaction snapshot(*m_database);
    if (m_database->dataVersion() != m_version)
        failAsChanged();
    Batch batch{*m_database, keys, std::vector<RecipeDetails>(keys.size())};
    readRecipes(batch);
    readIngredients(batch, site);
    readUtensils(batch, site);
    return std::move(batch.details);
}
