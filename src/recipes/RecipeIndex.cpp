#include "recipes/RecipeIndex.h"

#include "data/RowSet.h"
#include "data/TypesAndRatings.h"
#include "search/Folding.h"
#include "search/SearchQuery.h"

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint32 noNumber = std::numeric_limits<quint32>::max();

constexpr std::array<std::string_view, 3> searchedTables = {"Recipes", "Ingredients",
                                                            "RecipeIngredients"};

void appendCell(std::string &texts, const Cell &cell)
{
    if (const auto *text = std::get_if<std::string_view>(&cell))
        appendFolded(texts, *text);
    else
        texts += folded(displayText(toVariant(cell)));
    texts += '\n';
}

// Finds the numbers of keys in the order in which they are stored. Most keys are the same as the
// last one or the next.
class KeyNumbers
{
public:
    explicit KeyNumbers(const std::vector<qint64> &keys)
        : m_keys(keys)
    {
    }

    // Returns noNumber if there is no such key.
    quint32 of(qint64 key)
    {
        if (m_last < m_keys.size() && m_keys[m_last] < key)
            ++m_last;
        if (m_last >= m_keys.size() || m_keys[m_last] != key) {
            const auto found = std::lower_bound(m_keys.begin(), m_keys.end(), key);
            if (found == m_keys.end() || *found != key)
                return noNumber;
            m_last = static_cast<std::size_t>(found - m_keys.begin());
        }
        return static_cast<quint32>(m_last);
    }

private:
    const std::vector<qint64> &m_keys;
    std::size_t m_last = 0;
};

} // namespace

void RecipeIndex::Texts::shrink()
{
    keys.shrink_to_fit();
    starts.shrink_to_fit();
    text.shrink_to_fit();
}

void RecipeIndex::Texts::find(const SearchWord &word, std::vector<bool> &found) const
{
    std::size_t number = 0;
    std::size_t at = word.find(text);
    while (at != std::string::npos) {
        const auto next = std::upper_bound(starts.begin() + static_cast<std::ptrdiff_t>(number),
                                           starts.end(), at);
        number = static_cast<std::size_t>(next - starts.begin());
        found[number - 1] = true;
        if (next == starts.end())
            return;
        at = word.find(text, *next);
    }
}

void RecipeIndex::clear()
{
    *this = RecipeIndex();
}

bool RecipeIndex::isCurrent(Database &database) const
{
    if (!m_isBuilt || database.fileNumber() != m_fileNumber)
        return false;
    for (const std::string_view table : searchedTables) {
        const auto number = static_cast<std::size_t>(tableNumber(table));
        if (database.changes()[number] != m_changes[number])
            return false;
    }
    return database.dataVersion() == m_dataVersion;
}

// Each table is read into rows, which are dropped before the next table is read.
void RecipeIndex::build(Database &database)
{
    clear();
    RecipeIndex built;
    const ReadTransaction snapshot(database);
    built.m_fileNumber = database.fileNumber();
    built.m_dataVersion = database.dataVersion();
    built.m_changes = database.changes();
    built.readIngredients(database);
    built.readRecipes(database);
    built.readLinks(database);
    built.m_isBuilt = true;
    *this = std::move(built);
}

void RecipeIndex::readIngredients(Database &database)
{
    RowSet rows(database,
                u"SELECT IngredientID, IngredientName FROM Ingredients ORDER BY IngredientID"_s);
    rows.read();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        m_ingredients.keys.push_back(rows.integer(row, 0));
        m_ingredients.starts.push_back(m_ingredients.text.size());
        appendCell(m_ingredients.text, rows.cell(row, 1));
    }
    m_ingredients.shrink();
}

void RecipeIndex::readRecipes(Database &database)
{
    const QStringList types = recipeTypes();
    RowSet rows(database,
                u"SELECT RecipeID, RecipeType, RecipeName, Description, Author FROM Recipes "
                "ORDER BY RecipeID"_s);
    rows.read();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        m_recipes.keys.push_back(rows.integer(row, 0));
        m_recipes.starts.push_back(m_recipes.text.size());
        for (const int column : {2, 3, 4})
            appendCell(m_recipes.text, rows.cell(row, column));
        const Cell type = rows.cell(row, 1);
        const int position = type == Cell() ? defaultRecipeType : storedPosition(toVariant(type));
        m_recipes.text += folded(types.value(position));
        m_recipes.text += '\n';
    }
    m_recipes.shrink();
}

// A recipe or an ingredient can be missing in its table.
void RecipeIndex::readLinks(Database &database)
{
    RowSet rows(database, u"SELECT RecipeID, IngredientID FROM RecipeIngredients"_s);
    rows.read();
    KeyNumbers recipes(m_recipes.keys);
    KeyNumbers ingredients(m_ingredients.keys);
    m_links.reserve(static_cast<std::size_t>(rows.size()));
    for (qsizetype row = 0; row < rows.size(); ++row) {
        const Link link{recipes.of(rows.integer(row, 0)), ingredients.of(rows.integer(row, 1))};
        if (link.recipe != noNumber && link.ingredient != noNumber)
            m_links.push_back(link);
    }
}

std::vector<qint64> RecipeIndex::matches(Database &database, const SearchQuery &query)
{
    if (!isCurrent(database))
        build(database);
    const std::size_t count = m_recipes.keys.size();
    std::vector<bool> isMatch(count, true);
    for (const SearchWord &word : query.words()) {
        std::vector<bool> found(count);
        m_recipes.find(word, found);
        std::vector<bool> isIngredient(m_ingredients.keys.size());
        m_ingredients.find(word, isIngredient);
        for (const Link &link : m_links) {
            if (isIngredient[link.ingredient])
                found[link.recipe] = true;
        }
        for (std::size_t i = 0; i < count; ++i)
            isMatch[i] = isMatch[i] && found[i] != word.isExcluded;
    }
    std::vector<qint64> keys;
    for (std::size_t i = 0; i < count; ++i) {
        if (isMatch[i])
            keys.push_back(m_recipes.keys[i]);
    }
    return keys;
}
