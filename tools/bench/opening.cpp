#include "PlainStatement.h"
#include "Sources.h"
#include "Subjects.h"
#include "data/DatabasePath.h"
#include "import/frmImportRecipe.h"
#include "interaction/TerminalInteraction.h"

#include <SQLiteCpp/Database.h>

namespace {

// The connection as well: nothing has opened it before at the program's start.
double openPlainly(const QString &path)
{
    return secondsOf([&] {
        SQLite::Database database(path.toStdString(), SQLite::OPEN_READWRITE);
        for (const QString &table : importerSources())
            PlainStatement(database.getHandle(), "SELECT * FROM " + table.toStdString());
    });
}

double openImporter(const QString &path)
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
        printResult({"opening the hidden importer's connection and its five cursors",
                     size,
                     Unit::Seconds,
                     inTurns([&] { return openPlainly(path); }, [&] { return openImporter(path); }),
                     {Bound::Kind::AtMost, 1e-3}});
    }
}
