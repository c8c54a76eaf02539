#include "BenchFrame.h"
#include "PlainConnection.h"
#include "PlainStatement.h"
#include "Subjects.h"
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

// A catalog of that many entries and a first recipe of that many lines.
void makeKitchen(const QString &path)
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
            insert.bind(1, 17 * i);
            insert.bind(2, quantity);
            insert.run();
        }
        plain.exec("COMMIT");
    });
}

} // namespace

void measureComposing(Bench &bench)
{
    DatabasePath = bench.path(u"kitchen.rbk"_s);
    QFile::copy(bench.database(bench.sizes().front()), DatabasePath);
    makeKitchen(DatabasePath);
    SQLite::Database plain = plainConnection(DatabasePath.toStdString());
    PlainStatement catalog(plain.getHandle(),
                           "SELECT * FROM Ingredients ORDER BY IngredientType, IngredientName");
    const auto stepping = [&] { return secondsOf([&] { catalog.run(); }); };
    BenchFrame desk;

    printResult({"catalog of 10,000 entries: opening; plain steps its statement",
                 1,
                 Unit::Seconds,
                 inTurns(stepping,
                         [&] {
                             const double seconds = secondsOf([&] { desk.open<frmIngredient>(); });
                             desk.close(*desk.frame.find<frmIngredient>());
                             return seconds;
                         }),
                 {Bound::Kind::TimesYardstick, 10}});
    const frmIngredient &ingredient = desk.open<frmIngredient>();
    int shelfLife = 0;
    printResult({"the same: Save of a changed entry",
                 1,
                 Unit::Seconds,
                 inTurns(stepping,
                         [&] {
                             ingredient.findChild<QLineEdit *>("txtShelfLife"_L1)
                                 ->setText(QString::number(++shelfLife));
                             return secondsOf([&] { press(ingredient, "cmdSave"_L1); });
                         }),
                 {Bound::Kind::TimesYardstick, 10}});
    desk.close(*desk.frame.find<frmIngredient>());

    const frmRecipe &recipe = desk.open<frmRecipe>();
    const auto editor = [&]() -> const QWidget & {
        return *desk.frame.find<frmChangeIngredients>();
    };
    printResult({"ingredient editor of 500 lines on it: opening",
                 1,
                 Unit::Seconds,
                 inTurns(stepping,
                         [&] {
                             const double seconds =
                                 secondsOf([&] { press(recipe, "cmdChangeIngredients"_L1); });
                             press(editor(), "cmdCancel"_L1);
                             return seconds;
                         }),
                 {Bound::Kind::TimesYardstick, 10}});
    printResult({"its Done; plain deletes and inserts in one transaction",
                 1,
                 Unit::Seconds,
                 inTurns([&] { return plainReplacement(plain); },
                         [&] {
                             press(recipe, "cmdChangeIngredients"_L1);
                             const QWidget &window = editor();
                             return secondsOf([&] { press(window, "cmdDone"_L1); });
                         }),
                 {Bound::Kind::TimesYardstick, 2}});
}
