#include "GeneratedRecipe.h"
#include "PlainConnection.h"
#include "PlainStatement.h"
#include "Sources.h"
#include "Subjects.h"
#include "data/Criterion.h"
#include "data/RecordCursor.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int searches = 2000;

const QString recipesTable = u"Recipes"_s;

// The number of the recipe for a search; the searches spread over the whole table.
int somewhere(int search, int recipes)
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
        throw std::runtime_error("the cursor does not find a name");
}

// No name has an index in the file: each search looks at every recipe.
double findNamePlainly(SQLite::Database &plain, int recipe)
{
    PlainStatement statement(plain.getHandle(),
                             "SELECT RecipeID FROM Recipes WHERE RecipeName = ?");
    const std::string name = generatedRecipeName(recipe);
    statement.bind(1, name);
    return secondsOf([&] { statement.run(); });
}

double findNameWarm(RecordCursor &cursor, int recipes)
{
    QStringList criteria;
    for (int i = 0; i < searches; ++i)
        criteria.append(nameCriterion(somewhere(i, recipes)));
    return secondsOfOne(searches, [&](int i) { findName(cursor, criteria.at(i)); });
}

// The slowest of the first searches, one of which builds the index.
double findNameFirst(const std::shared_ptr<Database> &database, int recipes)
{
    RecordCursor cursor(database, recipesTable);
    cursor.MoveLast();
    double dearest = 0;
    for (int i = 1; i <= 5; ++i) {
        const QString criteria = nameCriterion(recipes - i);
        dearest = std::max(dearest, secondsOf([&] { findName(cursor, criteria); }));
    }
    return dearest;
}

void measureNames(SQLite::Database &connection, const std::shared_ptr<Database> &database,
                  int recipes)
{
    RecordCursor cursor(database, recipesTable);
    const auto plain = [&] { return findNamePlainly(connection, recipes / 2); };
    printResult({"FindFirst by name, warm",
                 recipes,
                 Unit::Seconds,
                 inTurns(plain, [&] { return findNameWarm(cursor, recipes); }),
                 {Bound::Kind::AtMost, 5e-6}});
    printResult({"FindFirst by name, the dearest of the first",
                 recipes,
                 Unit::Seconds,
                 inTurns(plain, [&] { return findNameFirst(database, recipes); }),
                 {Bound::Kind::AtMost, 50e-3}});
}

// The time includes making the text of the criterion.
int walkLines(RecordCursor &cursor, int recipe)
{
    const QString criteria = criterion("RecipeID"_L1, qint64{recipe} + 1);
    int lines = 0;
    for (cursor.FindFirst(criteria); !cursor.NoMatch(); cursor.FindNext(criteria))
        ++lines;
    return lines;
}

void measureLines(SQLite::Database &connection, const std::shared_ptr<Database> &database,
                  int recipes)
{
    const QString source = inLinkOrder(ingredientJoin(), "RecipeIngredients"_L1);
    RecordCursor cursor(database, source);
    PlainStatement statement(connection.getHandle(),
                             ingredientJoin().toStdString() + " WHERE RecipeID = ?");
    const auto plain = [&] {
        return secondsOfOne(searches, [&](int i) {
            statement.bind(1, qint64{somewhere(i, recipes)} + 1);
            statement.run();
        });
    };
    const auto walk = [&] {
        return secondsOfOne(searches, [&](int i) {
            if (walkLines(cursor, somewhere(i, recipes)) != 10)
                throw std::runtime_error("the cursor does not find a recipe's lines");
        });
    };
    printResult({"one recipe's lines by FindFirst and FindNext, warm; plain has the file's index",
                 recipes,
                 Unit::Seconds,
                 inTurns(plain, walk),
                 {Bound::Kind::AtMost, 20e-6}});
}

} // namespace

void measureSearching(Bench &bench)
{
    const int recipes = bench.largest();
    const QString path = bench.database(recipes);
    SQLite::Database connection = plainConnection(path.toStdString());
    const std::shared_ptr<Database> database = Database::open(path);
    measureNames(connection, database, recipes);
    measureLines(connection, database, recipes);
}
