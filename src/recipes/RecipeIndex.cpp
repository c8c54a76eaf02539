#include "recipes/RecipeIndex.h"

#include "data/RowSet.h"
#include "data/TypesAndRatings.h"
#include "search/Folding.h"
#include "search/SearchQuery.h"

#include <algorithm>
#include <array>
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

// Returns a position in recipeTypes(), or one outside.
int typeIn(const Cell &cell)
{
    return cell == Cell() ? defaultRecipeType : storedPosition(toVariant(cell));
}

// Calls `action` with the rows of "SELECT rowid, " and this end of a statement, in the order of
// their rowids, and the number of each row. Only the rows of a batch are in memory at the same
// time.
template <typename Action>
void forEachRow(Database &database, const QString &columnsAndTable, Action action)
{
    constexpr int batchSize = 1'000;
    QString condition = u"rowid IS NOT NULL"_s;
    qsizetype count = batchSize;
    while (count == batchSize) {
        RowSet rows(
            database,
            u"SELECT rowid, %1 WHERE %2 ORDER BY rowid LIMIT %3"_s.arg(columnsAndTable, condition)
                .arg(batchSize));
        rows.read();
        count = rows.size();
        for (qsizetype row = 0; row < count; ++row)
            action(rows, row);
        if (count > 0)
            condition = u"rowid > %1"_s.arg(rows.integer(count - 1, 0));
    }
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

void RecipeIndex::Texts::add(qint64 key)
{
    keys.push_back(key);
    starts.push_back(text.size());
}

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

bool RecipeIndex::isCurrent(Database &database) const
{
    if (!m_isBuilt)
        return false;
    for (const std::string_view table : searchedTables) {
        const auto number = static_cast<std::size_t>(tableNumber(table));
        if (database.changes()[number] != m_changes[number])
            return false;
    }
    return database.dataVersion() == m_dataVersion;
}

void RecipeIndex::build(Database &database)
{
    *this = RecipeIndex(); // releases the memory before as much is needed again
    RecipeIndex built;
    const ReadTransaction snapshot(database);
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
    forEachRow(database, u"IngredientName FROM Ingredients"_s,
               [this](const RowSet &rows, qsizetype row) {
                   m_ingredients.add(rows.integer(row, 0));
                   appendCell(m_ingredients.text, rows.cell(row, 1));
               });
    m_ingredients.shrink();
}

void RecipeIndex::readRecipes(Database &database)
{
    std::vector<std::string> types;
    for (const QString &type : recipeTypes())
        types.push_back(folded(type) + '\n');
    forEachRow(database, u"RecipeName, Description, Author, RecipeType FROM Recipes"_s,
               [&](const RowSet &rows, qsizetype row) {
                   m_recipes.add(rows.integer(row, 0));
                   for (const int column : {1, 2, 3})
                       appendCell(m_recipes.text, rows.cell(row, column));
                   const auto type = static_cast<std::size_t>(typeIn(rows.cell(row, 4)));
                   if (type < types.size())
                       m_recipes.text += types[type];
               });
    m_recipes.shrink();
}

// A recipe or an ingredient can be missing in its table.
void RecipeIndex::readLinks(Database &database)
{
    RowSet count(database, u"SELECT count(*) FROM RecipeIngredients NOT INDEXED"_s);
    count.read();
    m_links.reserve(static_cast<std::size_t>(count.integer(0, 0)));
    KeyNumbers recipes(m_recipes.keys);
    KeyNumbers ingredients(m_ingredients.keys);
    forEachRow(
        database, u"RecipeID, IngredientID FROM RecipeIngredients"_s,
        [&](const RowSet &rows, qsizetype row) {
            const Link link{recipes.of(rows.integer(row, 1)), ingredients.of(rows.integer(row, 2))};
            if (link.recipe != noNumber && link.ingredient != noNumber)
                m_links.push_back(link);
        });
}

// There are many more links than recipes, and most words are in the name of no ingredient.
std::vector<bool> RecipeIndex::recipesWith(const SearchWord &word) const
{
    std::vector<bool> found(m_recipes.keys.size());
    m_recipes.find(word, found);
    std::vector<bool> isIngredient(m_ingredients.keys.size());
    m_ingredients.find(word, isIngredient);
    if (std::find(isIngredient.begin(), isIngredient.end(), true) == isIngredient.end())
        return found;
    for (const Link &link : m_links) {
        if (isIngredient[link.ingredient])
            found[link.recipe] = true;
    }
    return found;
}

std::vector<qint64> RecipeIndex::matches(Database &database, const SearchQuery &query)
{
    if (!isCurrent(database))
        build(database);
    return matchesAsRead(query);
}

std::vector<qint64> RecipeIndex::matchesAsRead(const SearchQuery &query) const
{
    const std::size_t count = m_recipes.keys.size();
    std::vector<bool> isMatch(count, true);
    for (const SearchWord &word : query.words()) {
        const std::vector<bool> found = recipesWith(word);
        bool isAnyLeft = false;
        for (std::size_t i = 0; i < count; ++i) {
            isMatch[i] = isMatch[i] && found[i] != word.isExcluded;
            isAnyLeft = isAnyLeft || isMatch[i];
        }
        if (!isAnyLeft)
            return {};
    }
    std::vector<qint64> keys;
    for (std::size_t i = 0; i < count; ++i) {
        if (isMatch[i])
            keys.push_back(m_recipes.keys[i]);
    }
    return keys;
}

// The title is the first line of a recipe's texts.
std::vector<qint64> RecipeIndex::titled(QStringView text) const
{
    const std::string title = folded(text);
    std::vector<qint64> exact;
    std::vector<qint64> longer;
    for (std::size_t i = 0; i < m_recipes.keys.size(); ++i) {
        const std::size_t start = m_recipes.starts[i];
        if (m_recipes.text.compare(start, title.size(), title) != 0)
            continue;
        const bool isExact = m_recipes.text[start + title.size()] == '\n';
        (isExact ? exact : longer).push_back(m_recipes.keys[i]);
    }
    return exact.empty() ? longer : exact;
}
