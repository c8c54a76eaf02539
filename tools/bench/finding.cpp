#include "Bench.h"
#include "MemoryUse.h"
#include "PlainSqlite.h"
#include "recipes/RecipeIndex.h"
#include "search/SearchQuery.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int smallSize = 5'000;
constexpr double mebibyte = 1024 * 1024;

// Most recipes match the first letters, and few match all of them.
const QString typed = u"soup leek -\"on monday\""_s;

// Finds the recipes with one word, and ignores only the case of ASCII letters.
const std::string plainSearch =
    "SELECT RecipeID FROM Recipes WHERE RecipeName LIKE '%soup%' OR Description LIKE '%soup%' OR "
    "Author LIKE '%soup%' OR RecipeID IN (SELECT RecipeID FROM RecipeIngredients WHERE "
    "IngredientID IN (SELECT IngredientID FROM Ingredients WHERE IngredientName LIKE '%soup%'))";

std::size_t find(RecipeIndex &index, Database &database, qsizetype letters)
{
    return index.matches(database, SearchQuery(QStringView(typed).first(letters))).size();
}

Cost findFirst(Database &database)
{
    RecipeIndex index;
    return secondsOf([&] {
        if (find(index, database, 1) == 0)
            throw std::runtime_error("the index found no recipe");
    });
}

Cost findNext(RecipeIndex &index, Database &database)
{
    Cost longest{0};
    for (qsizetype letters = 2; letters <= typed.size(); ++letters)
        longest = std::max(longest, secondsOf([&] { find(index, database, letters); }),
                           [](const Cost &a, const Cost &b) { return a.value < b.value; });
    return longest;
}

void measureSize(Bench &bench, int recipes)
{
    const bool isSmall = recipes <= smallSize;
    const auto limit = [isSmall](double small, double large) {
        return Limit{Limit::Kind::Absolute, isSmall ? small : large};
    };
    const QString path = bench.database(recipes);
    SQLite::Database connection = plainConnection(path.toStdString());
    PlainStatement ingredients(connection.getHandle(), "SELECT IngredientName FROM Ingredients");
    PlainStatement texts(connection.getHandle(),
                         "SELECT RecipeName, Description, Author, RecipeType FROM Recipes");
    PlainStatement links(connection.getHandle(),
                         "SELECT RecipeID, IngredientID FROM RecipeIngredients");
    const std::shared_ptr<Database> database = Database::open(path);
    bench.report({"first letter in the find bar (baseline: read the texts and links)", recipes,
                  Unit::Seconds,
                  compare(
                      [&] {
                          return secondsOf([&] {
                              ingredients.run();
                              texts.run();
                              links.run();
                          });
                      },
                      [&] { return findFirst(*database); }),
                  limit(40e-3, 600e-3)});
    PlainStatement search(connection.getHandle(), plainSearch);
    RecipeIndex index;
    find(index, *database, 1);
    bench.report({"further letter in the find bar, the longest (baseline: LIKE with one word)",
                  recipes, Unit::Seconds,
                  compare([&] { return secondsOf([&] { search.run(); }); },
                          [&] { return findNext(index, *database); }),
                  limit(5e-3, 50e-3)});
    const auto memory = [&](const QString &subject) {
        return Cost{memoryUse({subject, path, u"RecipeIngredients"_s})};
    };
    bench.report({"memory for the index of the find bar (baseline: step through the links)",
                  recipes, Unit::Bytes,
                  compare([&] { return memory(u"plain"_s); }, [&] { return memory(u"index"_s); }),
                  limit(2 * mebibyte, 30 * mebibyte)});
}

} // namespace

void measureFinding(Bench &bench)
{
    measureSize(bench, std::min(smallSize, bench.largest()));
    if (bench.largest() > smallSize)
        measureSize(bench, bench.largest());
}
