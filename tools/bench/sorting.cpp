#include "PlainStatement.h"
#include "Subjects.h"
#include "data/Database.h"

#include <SQLiteCpp/Database.h>

namespace {

// The names alone, so that it is the comparisons that cost.
void copyNames(SQLite::Database &database)
{
    database.exec("CREATE TEMP TABLE Names AS SELECT RecipeID, RecipeName FROM Recipes");
}

} // namespace

void measureSorting(Bench &bench)
{
    const QString path = bench.database(bench.largest());
    const std::shared_ptr<Database> database = Database::open(path);
    SQLite::Database plain(path.toStdString());
    copyNames(database->connection());
    copyNames(plain);
    // On the program's connection NOCASE is the program's own comparison.
    const char *text = "SELECT RecipeID FROM Names ORDER BY RecipeName COLLATE NOCASE";
    PlainStatement ourOrder(database->connection().getHandle(), text);
    PlainStatement builtInOrder(plain.getHandle(), text);
    printResult({"sorting the names; plain is the built-in NOCASE, which knows ASCII alone",
                 bench.largest(),
                 Unit::Seconds,
                 inTurns([&] { return secondsOf([&] { builtInOrder.run(); }); },
                         [&] { return secondsOf([&] { ourOrder.run(); }); }),
                 {Bound::Kind::TimesYardstick, 1.5}});
}
