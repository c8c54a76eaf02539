#include "Bench.h"
#include "BenchWindow.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Reads one recipe, its ingredients and its utensils with plain SQLite.
class PlainRecipe
{
public:
    explicit PlainRecipe(SQLite::Database &plain)
        : m_recipe(plain.getHandle(), "SELECT * FROM Recipes WHERE RecipeID = 1")
        , m_ingredients(plain.getHandle(),
                        ingredientJoin().toStdString() + " WHERE RecipeIngredients.RecipeID = 1")
        , m_utensils(plain.getHandle(),
                     "SELECT UtensilName FROM RecipeUtensils NATURAL JOIN Utensils "
                     "WHERE RecipeID = 1")
    {
    }

    void read()
    {
        m_recipe.run();
        m_ingredients.run();
        m_utensils.run();
    }

private:
    PlainStatement m_recipe;
    PlainStatement m_ingredients;
    PlainStatement m_utensils;
};

// Each round opens the database, too. Both sides begin with an empty page cache.
void measureFirstActivation(Bench &bench, int recipes)
{
    DatabasePath = bench.database(recipes);
    const std::vector<Source> sources = windowSources();
    const auto stepThroughSources = [&] {
        return secondsOf([&] {
            const SQLite::Database plain = plainConnection(DatabasePath.toStdString());
            for (std::size_t i = 0; i < 3; ++i)
                PlainStatement(plain.getHandle(), sources[i].plainText.toStdString()).run();
        });
    };
    BenchWindow window;
    const auto open = [&](qint64 recipe) {
        const Cost cost = secondsOf([&] {
            window.frame.load<frmRecipe>().setCurrentRecipeID(recipe);
            window.open<frmRecipe>();
        });
        window.close(*window.frame.find<frmRecipe>());
        return cost;
    };
    constexpr qint64 none = 0;
    bench.report({"open the recipe window with the first recipe (baseline: step through its three "
                  "statements)",
                  recipes, Unit::Seconds, compare(stepThroughSources, [&] { return open(none); }),
                  absoluteLimit(recipes, {25e-3, 150e-3, 1.5})});
    bench.report({"open the recipe window with a recipe of the list (baseline: the same)", recipes,
                  Unit::Seconds, compare(stepThroughSources, [&] { return open(recipes / 2); }),
                  absoluteLimit(recipes, {25e-3, 25e-3, 25e-3})});
}

// Presses a button of the window several times in each round, so that the round which is not
// counted reads what later presses need.
void measureMoves(Bench &bench, const frmRecipe &recipe, PlainRecipe &plain)
{
    constexpr int presses = 20;
    for (const char *button : {"cmdNext", "cmdPrevious"}) {
        bench.report({std::string(button + 3) + " in the recipe window",
                      bench.largest(),
                      Unit::Seconds,
                      compare([&] { return secondsPerCall(presses, [&](int) { plain.read(); }); },
                              [&] {
                                  return secondsPerCall(presses, [&](int) {
                                      press(recipe, QLatin1StringView(button));
                                  });
                              }),
                      {Limit::Kind::Absolute, 5e-3}});
    }
}

} // namespace

void measureBrowsing(Bench &bench)
{
    for (const int size : bench.sizes())
        measureFirstActivation(bench, size);
    DatabasePath = bench.database(bench.largest());
    SQLite::Database connection = plainConnection(DatabasePath.toStdString());
    PlainRecipe plain(connection);
    BenchWindow window;
    window.open<frmRecipes>();
    const frmRecipe &recipe = window.open<frmRecipe>();
    measureMoves(bench, recipe, plain);
    bench.report({"return to the unchanged recipe window",
                  bench.largest(),
                  Unit::Seconds,
                  compare([&] { return secondsOf([&] { plain.read(); }); },
                          [&] {
                              window.open<frmRecipes>();
                              return secondsOf([&] { window.open<frmRecipe>(); });
                          }),
                  {Limit::Kind::Absolute, 10e-3}});
}
