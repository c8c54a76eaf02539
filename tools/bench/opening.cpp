#include "Bench.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "interaction/TerminalInteraction.h"

#include <SQLiteCpp/Database.h>

namespace {

// Opens a connection too, because the program has none when it starts.
Cost openPlainly(const QString &path)
{
    return secondsOf([&] {
        SQLite::Database database(path.toStdString(), SQLite::OPEN_READWRITE);
        for (const QString &table : importerSources())
            PlainStatement(database.getHandle(), "SELECT * FROM " + table.toStdString());
    });
}

Cost openImporter(const QString &path)
{
    DatabasePath = path;
    TerminalInteraction interaction;
    frmImportRecipe importer(interaction);
    return secondsOf([&] {
        importer.Form_Load();
        importer.openDataSources();
    });
}

} // namespace

void measureOpening(Bench &bench)
{
    for (const int size : bench.sizes()) {
        const QString path = bench.database(size);
        bench.report(
            {"open the importer: a connection and five cursors",
             size,
             Unit::Seconds,
             compare([&] { return openPlainly(path); }, [&] { return openImporter(path); }),
             {Limit::Kind::Absolute, 1e-3}});
    }
}
