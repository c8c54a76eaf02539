#include "Bench.h"
#include "GeneratedRecipe.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/Criterion.h"
#include "data/RecordCursor.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int searches = 2000;

const QString recipesTable = u"Recipes"_s;

// Returns a recipe's number for each search; together they are spread over the whole table.
int scatteredRecipe(int search, int recipes)
{
    constexpr qint64 stride = 7919;
    return static_cast<int>(search * stride % recipes);
}

QString nameCriterion(int recipe)
{
    return criterion("RecipeName"_L1, Comparison::Equal,
                     QString::fromStdString(generatedRecipeName(recipe)));
}

void findName(RecordCursor &cursor, const QString &criteria)
{
    cursor.FindFirst(criteria);
    if (cursor.NoMatch())
        throw std::runtime_error("the cursor did not find a name");
}

// Each search reads every recipe, because the database has no index on names.
Cost findNamePlainly(SQLite::Database &plain, int recipe)
{
    PlainStatement statement(plain.getHandle(),
                             "SELECT RecipeID FROM Recipes WHERE RecipeName = ?");
    const std::string name = generatedRecipeName(recipe);
    statement.bind(1, name);
    return secondsOf([&] { statement.run(); });
}

Cost findNameWarm(RecordCursor &cursor, int recipes)
{
    QStringList criteria;
    for (int i = 0; i < searches; ++i)
        criteria.append(nameCriterion(scatteredRecipe(i, recipes)));
    return secondsPerCall(searches, [&](int i) { findName(cursor, criteria.at(i)); });
}

// Returns the longest of the first five searches, one of which builds the cursor's index.
Cost findNameFirst(const std::shared_ptr<Database> &database, int recipes)
{
    RecordCursor cursor(database, recipesTable);
    cursor.MoveLast();
    Cost longest{0};
    for (int i = 1; i <= 5; ++i) {
        const QString criteria = nameCriterion(recipes - i);
        longest = std::max(longest, secondsOf([&] { findName(cursor, criteria); }),
                           [](const Cost &a, const Cost &b) { return a.value < b.value; });
    }
    return longest;
}

void measureNames(Bench &bench, SQLite::Database &connection,
                  const std::shared_ptr<Database> &database, int recipes)
{
    RecordCursor cursor(database, recipesTable);
    const auto plain = [&] { return findNamePlainly(connection, recipes / 2); };
    bench.report({"FindFirst by name with the cursor's index",
                  recipes,
                  Unit::Seconds,
                  compare(plain, [&] { return findNameWarm(cursor, recipes); }),
                  {Limit::Kind::Absolute, 5e-6}});
    bench.report({"FindFirst by name, the longest of the first five",
                  recipes,
                  Unit::Seconds,
                  compare(plain, [&] { return findNameFirst(database, recipes); }),
                  {Limit::Kind::Absolute, 50e-3}});
}

// The measured time includes writing the criterion.
int walkLines(RecordCursor &cursor, int recipe)
{
    const QString criteria = criterion("RecipeID"_L1, qint64{recipe} + 1);
    int lines = 0;
    for (cursor.FindFirst(criteria); !cursor.NoMatch(); cursor.FindNext(criteria))
        ++lines;
    return lines;
}

void measureLines(Bench &bench, SQLite::Database &connection,
                  const std::shared_ptr<Database> &database, int recipes)
{
    const QString source = inLinkOrder(ingredientJoin(), "RecipeIngredients"_L1);
    RecordCursor cursor(database, source);
    PlainStatement statement(connection.getHandle(),
                             ingredientJoin().toStdString() + " WHERE RecipeID = ?");
    const auto plain = [&] {
        return secondsPerCall(searches, [&](int i) {
            statement.bind(1, qint64{scatteredRecipe(i, recipes)} + 1);
            statement.run();
        });
    };
    const auto walk = [&] {
        return secondsPerCall(searches, [&](int i) {
            if (walkLines(cursor, scatteredRecipe(i, recipes)) != 10)
                throw std::runtime_error("the cursor did not find all lines of a recipe");
        });
    };
    bench.report(
        {"FindFirst and FindNext of a recipe's lines (baseline: with the database's index)",
         recipes,
         Unit::Seconds,
         compare(plain, walk),
         {Limit::Kind::Absolute, 20e-6}});
}

} // namespace

void measureSearching(Bench &bench)
{
    const int recipes = bench.largest();
    const QString path = bench.database(recipes);
    SQLite::Database connection = plainConnection(path.toStdString());
    const std::shared_ptr<Database> database = Database::open(path);
    measureNames(bench, connection, database, recipes);
    measureLines(bench, connection, database, recipes);
}
