#include "Bench.h"
#include "BenchWindow.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"

#include <QPushButton>

namespace {

void press(const frmRecipe &window, const char *button)
{
    window.findChild<QPushButton *>(QLatin1StringView(button))->click();
    QCoreApplication::processEvents();
}

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

    double seconds()
    {
        return secondsOf([this] {
            m_recipe.run();
            m_ingredients.run();
            m_utensils.run();
        });
    }

private:
    PlainStatement m_recipe;
    PlainStatement m_ingredients;
    PlainStatement m_utensils;
};

void measureOpeningRecipe(Bench &bench)
{
    constexpr int size = 10'000;
    DatabasePath = bench.database(size);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    BenchWindow window;
    const std::vector<Source> sources = windowSources();
    printResult({"open the first recipe (baseline: step through its three statements)",
                 size,
                 Unit::Seconds,
                 compare(
                     [&] {
                         return secondsOf([&] {
                             for (std::size_t i = 0; i < 3; ++i)
                                 PlainStatement(plain.getHandle(),
                                                sources[i].plainText.toStdString())
                                     .run();
                         });
                     },
                     [&] {
                         const double seconds = secondsOf([&] { window.open<frmRecipe>(); });
                         window.close(*window.frame.find<frmRecipe>());
                         return seconds;
                     }),
                 {Limit::Kind::Ratio, 1.5}});
}

} // namespace

void measureBrowsing(Bench &bench)
{
    if (bench.largest() >= 10'000)
        measureOpeningRecipe(bench);
    const int size = bench.largest();
    DatabasePath = bench.database(size);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    PlainRecipe plainRecipe(plain);
    const auto plainSeconds = [&] { return plainRecipe.seconds(); };
    BenchWindow window;
    window.open<frmRecipes>();
    const frmRecipe &recipe = window.open<frmRecipe>();
    for (const char *button : {"cmdNext", "cmdPrevious"}) {
        printResult(
            {std::string(button + 3) + " in the recipe window",
             size,
             Unit::Seconds,
             compare(plainSeconds, [&] { return secondsOf([&] { press(recipe, button); }); }),
             {Limit::Kind::Absolute, 5e-3}});
    }
    printResult({"return to the unchanged recipe window",
                 size,
                 Unit::Seconds,
                 compare(plainSeconds,
                         [&] {
                             window.open<frmRecipes>();
                             return secondsOf([&] { window.open<frmRecipe>(); });
                         }),
                 {Limit::Kind::Absolute, 10e-3}});
}
