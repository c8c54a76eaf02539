#include "BenchFrame.h"
#include "PlainConnection.h"
#include "PlainStatement.h"
#include "Sources.h"
#include "Subjects.h"
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

// One recipe and its lines, found by the engine.
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

void measureOpeningOfRecipe(Bench &bench)
{
    constexpr int size = 10'000;
    DatabasePath = bench.database(size);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    BenchFrame desk;
    const std::vector<Source> sources = windowSources();
    printResult({"opening the first recipe; plain steps its three statements",
                 size,
                 Unit::Seconds,
                 inTurns(
                     [&] {
                         return secondsOf([&] {
                             for (std::size_t i = 0; i < 3; ++i)
                                 PlainStatement(plain.getHandle(),
                                                sources[i].plainText.toStdString())
                                     .run();
                         });
                     },
                     [&] {
                         const double seconds = secondsOf([&] { desk.open<frmRecipe>(); });
                         desk.close(*desk.frame.find<frmRecipe>());
                         return seconds;
                     }),
                 {Bound::Kind::TimesYardstick, 1.5}});
}

} // namespace

void measureBrowsing(Bench &bench)
{
    if (bench.largest() >= 10'000)
        measureOpeningOfRecipe(bench);
    const int size = bench.largest();
    DatabasePath = bench.database(size);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    PlainRecipe plainRecipe(plain);
    const auto plainSeconds = [&] { return plainRecipe.seconds(); };
    BenchFrame desk;
    desk.open<frmRecipes>();
    const frmRecipe &recipe = desk.open<frmRecipe>();
    for (const char *button : {"cmdNext", "cmdPrevious"}) {
        printResult(
            {std::string(button + 3) + " to the filled window",
             size,
             Unit::Seconds,
             inTurns(plainSeconds, [&] { return secondsOf([&] { press(recipe, button); }); }),
             {Bound::Kind::AtMost, 5e-3}});
    }
    printResult({"back to the recipe window, nothing changed",
                 size,
                 Unit::Seconds,
                 inTurns(plainSeconds,
                         [&] {
                             desk.open<frmRecipes>();
                             return secondsOf([&] { desk.open<frmRecipe>(); });
                         }),
                 {Bound::Kind::AtMost, 10e-3}});
}
