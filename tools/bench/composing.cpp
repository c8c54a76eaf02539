#include "Bench.h"
#include "BenchWindow.h"
#include "PlainSqlite.h"
#include "catalogs/frmIngredient.h"
#include "composition/frmChangeIngredients.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipe.h"

#include <QLineEdit>
#include <QPushButton>

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

void press(const QWidget &window, QLatin1StringView button)
{
    window.findChild<QPushButton *>(button)->click();
    QCoreApplication::processEvents();
}

double plainReplacement(SQLite::Database &plain)
{
    return secondsOf([&] {
        plain.exec("BEGIN IMMEDIATE; DELETE FROM RecipeIngredients WHERE RecipeID = 1");
        PlainStatement insert(plain.getHandle(), "INSERT INTO RecipeIngredients VALUES (1, ?, ?)");
        for (int i = 1; i <= lines; ++i) {
            const std::string quantity = std::to_string(i) + " cup";
            insert.bind(1, qint64{17} * i);
            insert.bind(2, quantity);
            insert.run();
        }
        plain.exec("COMMIT");
    });
}

} // namespace

void measureComposing(Bench &bench)
{
    DatabasePath = bench.path(u"composing.rbk"_s);
    QFile::copy(bench.database(bench.sizes().front()), DatabasePath);
    fillDatabase(DatabasePath);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    PlainStatement catalog(plain.getHandle(),
                           "SELECT * FROM Ingredients ORDER BY IngredientType, IngredientName");
    const auto stepping = [&] { return secondsOf([&] { catalog.run(); }); };
    BenchWindow window;

    printResult({"open a catalog of 10,000 entries (baseline: step through its statement)",
                 1,
                 Unit::Seconds,
                 compare(stepping,
                         [&] {
                             const double seconds =
                                 secondsOf([&] { window.open<frmIngredient>(); });
                             window.close(*window.frame.find<frmIngredient>());
                             return seconds;
                         }),
                 {Limit::Kind::Ratio, 10}});
    const frmIngredient &ingredient = window.open<frmIngredient>();
    int shelfLife = 0;
    printResult({"save a changed entry of this catalog (baseline: the same)",
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

    const frmRecipe &recipe = window.open<frmRecipe>();
    const auto editor = [&]() -> const QWidget & {
        return *window.frame.find<frmChangeIngredients>();
    };
    printResult({"open the editor for 500 ingredients with this catalog (baseline: the same)",
                 1,
                 Unit::Seconds,
                 compare(stepping,
                         [&] {
                             const double seconds =
                                 secondsOf([&] { press(recipe, "cmdChangeIngredients"_L1); });
                             press(editor(), "cmdCancel"_L1);
                             return seconds;
                         }),
                 {Limit::Kind::Ratio, 10}});
    printResult({"Done in this editor (baseline: delete and insert in one transaction)",
                 1,
                 Unit::Seconds,
                 compare([&] { return plainReplacement(plain); },
                         [&] {
                             press(recipe, "cmdChangeIngredients"_L1);
                             const QWidget &opened = editor();
                             return secondsOf([&] { press(opened, "cmdDone"_L1); });
                         }),
                 {Limit::Kind::Ratio, 2}});
}
