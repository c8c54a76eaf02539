#include "Bench.h"
#include "BenchWindow.h"
#include "IngredientEditor.h"
#include "PlainSqlite.h"
#include "WritableDatabase.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipe.h"

#include <QComboBox>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int linesOfRecipe = 10;

// Gives the recipe another type, which moves it in the order of the recipes. Edit need not be
// pressed first: it only lets the user enter what is set here.
Cost saveOtherType(const frmRecipe &recipe)
{
    auto &types = *recipe.findChild<QComboBox *>("cmbRecipeType"_L1);
    types.setCurrentIndex((types.currentIndex() + 1) % types.count());
    return secondsOf([&] { press(recipe, "cmdSave"_L1); });
}

Cost saveOtherTypePlainly(SQLite::Database &plain, qint64 recipe)
{
    return secondsOf([&] {
        plain.exec("BEGIN IMMEDIATE");
        PlainStatement update(plain.getHandle(),
                              "UPDATE Recipes SET RecipeType = RecipeType + 1 WHERE RecipeID = ?");
        update.bind(1, recipe);
        update.run();
        plain.exec("COMMIT");
    });
}

void measureRecipe(Bench &bench, int recipes)
{
    const qint64 key = recipes / 2;
    DatabasePath = writableDatabase(bench, recipes, Writer::Program);
    const auto database = openForWrites(DatabasePath);
    SQLite::Database plain =
        plainConnection(writableDatabase(bench, recipes, Writer::PlainSqlite).toStdString());
    BenchWindow window;
    auto &recipe = window.open<frmRecipe>();
    recipe.setCurrentRecipeID(key);
    IngredientEditor editor(window, recipe);

    // Both commits wait for the disk, so the limit is for what the program adds to that.
    bench.report({"Done in the ingredient editor (baseline: delete and insert in one transaction)",
                  recipes,
                  Unit::Seconds,
                  compare([&] { return replaceLinesPlainly(plain, key, linesOfRecipe); },
                          [&] { return editor.changeLineAndFinish(); }),
                  {Limit::Kind::Difference, 8e-3}});
    bench.report({"save a recipe with another type (baseline: update in one transaction)", recipes,
                  Unit::Seconds,
                  compare([&] { return saveOtherTypePlainly(plain, key); },
                          [&] { return saveOtherType(recipe); }),
                  absoluteLimit(recipes, {15e-3, 60e-3, 400e-3})});
}

} // namespace

void measureEditing(Bench &bench)
{
    for (const int size : bench.largeSizes())
        measureRecipe(bench, size);
}
