#include "Bench.h"
#include "BenchWindow.h"
#include "MemoryUse.h"
#include "PlainSqlite.h"
#include "data/DatabasePath.h"
#include "recipes/frmRecipes.h"
#include "widgets/FindBar.h"

#include <QLineEdit>

#include <algorithm>

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

// The recipe list with its find bar open.
class OpenFindBar
{
public:
    OpenFindBar()
    {
        m_list.findChild<FindBar *>()->open();
        QCoreApplication::processEvents();
    }

    // Types the text up to this letter, and paints what is found.
    Cost type(qsizetype letters)
    {
        return secondsOf([&] {
            m_field.setText(typed.first(letters));
            QCoreApplication::processEvents();
        });
    }

private:
    BenchWindow m_window;
    frmRecipes &m_list = m_window.open<frmRecipes>();
    QLineEdit &m_field = *m_list.findChild<QLineEdit *>("txtFind"_L1);
};

Cost findFirst()
{
    return OpenFindBar().type(1);
}

Cost findNext(OpenFindBar &bar)
{
    Cost longest{0};
    bar.type(1);
    for (qsizetype letters = 2; letters <= typed.size(); ++letters)
        longest = std::max(longest, bar.type(letters),
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
    DatabasePath = path;
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
                      findFirst),
                  limit(40e-3, 600e-3)});
    PlainStatement search(connection.getHandle(), plainSearch);
    OpenFindBar bar;
    bench.report(
        {"further letter in the find bar, the longest (baseline: LIKE with one word)", recipes,
         Unit::Seconds,
         compare([&] { return secondsOf([&] { search.run(); }); }, [&] { return findNext(bar); }),
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
