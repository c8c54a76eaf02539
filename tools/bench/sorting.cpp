#include "Bench.h"
#include "PlainSqlite.h"
#include "data/Database.h"

#include <SQLiteCpp/Database.h>

namespace {

// Copies only the names, so that comparing them takes most of the time.
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
    // The program's connection replaces NOCASE with its own comparison.
    const char *text = "SELECT RecipeID FROM Names ORDER BY RecipeName COLLATE NOCASE";
    PlainStatement ourOrder(database->connection().getHandle(), text);
    PlainStatement builtInOrder(plain.getHandle(), text);
    bench.report(
        {"sort the names of recipes (baseline: the built-in NOCASE, which folds ASCII only)",
         bench.largest(),
         Unit::Seconds,
         compare([&] { return secondsOf([&] { builtInOrder.run(); }); },
                 [&] { return secondsOf([&] { ourOrder.run(); }); }),
         {Limit::Kind::Ratio, 1.5}});
}
