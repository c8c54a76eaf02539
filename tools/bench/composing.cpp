#include "Bench.h"
#include "BenchWindow.h"
#include "IngredientEditor.h"
#include "PlainSqlite.h"
#include "catalogs/frmIngredient.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipe.h"

#include <QFile>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int entries = 10'000;
constexpr int lines = 500;

// Replaces the contents with a catalog of `entries` ingredients and one recipe that uses `lines` of
// them.
void fillDatabase(const QString &path)
{
    SQLite::Database database = plainConnection(path.toStdString());
    const auto upTo = [](int count) {
        return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
            + std::to_string(count) + ")";
    };
    database.exec("DELETE FROM Ingredients; DELETE FROM RecipeIngredients; DELETE FROM Recipes;"
                  "INSERT INTO Recipes (RecipeID, RecipeName, Rating) VALUES (1, 'Feast', 0);"
                  + upTo(entries)
                  + " INSERT INTO Ingredients SELECT i, 'Ingredient ' || i, i % 12, 30, 1 FROM n;"
                  + upTo(lines)
                  + " INSERT INTO RecipeIngredients SELECT 1, 17 * i, i || ' cup' FROM n");
}

} // namespace

void measureComposing(Bench &bench)
{
    // Plain SQLite writes to another file, see WritableDatabase.h.
    DatabasePath = bench.path(u"composing.rbk"_s);
    const QString plainPath = bench.path(u"composing plainly.rbk"_s);
    for (const QString &path : {DatabasePath, plainPath}) {
        QFile::copy(bench.database(bench.sizes().front()), path);
        fillDatabase(path);
    }
    SQLite::Database plain = plainConnection(plainPath.toStdString());
    PlainStatement catalog(plain.getHandle(),
                           "SELECT * FROM Ingredients ORDER BY IngredientType, IngredientName");
    const auto stepping = [&] { return secondsOf([&] { catalog.run(); }); };
    BenchWindow window;

    bench.report({"open a catalog of 10,000 entries (baseline: step through its statement)",
                  1,
                  Unit::Seconds,
                  compare(stepping,
                          [&] {
                              const Cost cost = secondsOf([&] { window.open<frmIngredient>(); });
                              window.close(*window.frame.find<frmIngredient>());
                              return cost;
                          }),
                  {Limit::Kind::Ratio, 10}});
    const frmIngredient &ingredient = window.open<frmIngredient>();
    int shelfLife = 0;
    bench.report({"save a changed entry of this catalog (baseline: the same)",
                  1,
                  Unit::Seconds,
                  compare(stepping,
                          [&] {
                              ingredient.findChild<QLineEdit *>("txtShelfLife"_L1)
                                  ->setText(QString::number(++shelfLife));
                              return secondsOf([&] { press(ingredient, "cmdSave"_L1); });
                          }),
                  {Limit::Kind::Ratio, 10}});
    window.close(*window.frame.find<frmIngredient>());

    IngredientEditor editor(window, window.open<frmRecipe>());
    bench.report({"open the editor for 500 ingredients with this catalog (baseline: the same)",
                  1,
                  Unit::Seconds,
                  compare(stepping,
                          [&] {
                              const Cost cost = secondsOf([&] { editor.open(); });
                              editor.cancel();
                              return cost;
                          }),
                  {Limit::Kind::Ratio, 10}});
    bench.report({"Done in this editor, after a change of one line (baseline: delete and insert in "
                  "one transaction)",
                  1,
                  Unit::Seconds,
                  compare([&] { return replaceLinesPlainly(plain, 1, lines); },
                          [&] { return editor.changeLineAndFinish(); }),
                  {Limit::Kind::Absolute, 8e-3}});
}
