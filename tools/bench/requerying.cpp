#include "Bench.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/Database.h"
#include "data/RecordCursor.h"

#include <SQLiteCpp/Database.h>

#include <vector>

namespace {

constexpr int repetitions = 2000;

std::vector<std::unique_ptr<RecordCursor>> readCursors(const std::shared_ptr<Database> &database,
                                                       const std::vector<QString> &sources)
{
    std::vector<std::unique_ptr<RecordCursor>> cursors;
    for (const QString &source : sources) {
        cursors.push_back(std::make_unique<RecordCursor>(database, source));
        cursors.back()->MoveLast();
    }
    return cursors;
}

} // namespace

// Requeries the five cursors in one ReadTransaction, as windows and the importer do.
void measureRequerying(Bench &bench)
{
    const int size = bench.largest();
    const std::shared_ptr<Database> database = Database::open(bench.database(size));
    const std::vector<QString> sources = importerSources();
    const auto cursors = readCursors(database, sources);
    PlainStatement version(database->connection().getHandle(), "PRAGMA data_version");

    const auto askVersion = [&] {
        return secondsPerCall(repetitions, [&](int) { version.run(); });
    };
    const auto requery = [&] {
        return secondsPerCall(repetitions, [&](int) {
            const ReadTransaction scope(*database);
            for (const auto &cursor : cursors)
                cursor->Requery();
        });
    };
    bench.report({"requery five unchanged cursors (baseline: one PRAGMA data_version)",
                  size,
                  Unit::Seconds,
                  compare(askVersion, requery),
                  {Limit::Kind::Ratio, 2}});

    const ReadTransaction scope(*database);
    bench.report({"the same inside a transaction",
                  size,
                  Unit::Seconds,
                  compare(askVersion, requery),
                  {Limit::Kind::Absolute, 2e-6}});
}
