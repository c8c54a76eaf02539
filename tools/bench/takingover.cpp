#include "Bench.h"
#include "MemoryUse.h"
#include "RecipeInserter.h"
#include "platform/DiskSync.h"
#include "takeover/Takeover.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <numeric>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int recipes = 20'000;

// The old file has the rows of the generated database.
QString makeOldFile(Bench &bench)
{
    QString file = bench.path(u"old.rbk"_s);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(u"python3"_s,
                  {QStringLiteral(BENCH_MAKEFILES), u"copy"_s, bench.database(recipes), file});
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        throw std::runtime_error("the old file cannot be made");
    return file;
}

std::vector<qint64> keysFrom(qint64 first, int count)
{
    std::vector<qint64> keys(static_cast<std::size_t>(count));
    std::iota(keys.begin(), keys.end(), first);
    return keys;
}

// Inserts the rows with the settings of the takeover: nothing is journaled, and the disk is waited
// for once, at the end.
Cost insertPlainly(const QString &path, const std::vector<GeneratedRecipe> &rows)
{
    const CatalogSizes catalogs = catalogSizes(recipes);
    const std::vector<qint64> ingredients = keysFrom(1, catalogs.ingredients);
    const std::vector<qint64> utensils = keysFrom(1, catalogs.utensils);
    QFile::remove(path);
    return secondsOf([&] {
        {
            SQLite::Database database = createDatabase(path.toStdString());
            database.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
                          "PRAGMA locking_mode = EXCLUSIVE");
            RecipeInserter inserter(std::move(database));
            inserter.begin();
            for (int i = 0; i < catalogs.ingredients; ++i)
                inserter.addIngredient(i);
            for (int i = 0; i < catalogs.utensils; ++i)
                inserter.addUtensil(i);
            for (const GeneratedRecipe &recipe : rows)
                inserter.addRecipe(recipe, ingredients, utensils);
            inserter.commit();
        }
        if (platform::syncToDisk(path.toStdString()))
            throw std::runtime_error("the database cannot be synced");
    });
}

Cost takeOver(const QString &oldFile, const QString &path)
{
    QFile::remove(path);
    SilentProgress progress;
    return secondsOf([&] {
        if (!Takeover(oldFile).writeTo(path, progress)->isComplete())
            throw std::runtime_error("rows are lost");
    });
}

} // namespace

void measureTakingOver(Bench &bench)
{
    const QString oldFile = makeOldFile(bench);
    const QString newFile = bench.path(u"new.rbk"_s);
    std::vector<GeneratedRecipe> rows;
    rows.reserve(recipes);
    for (int i = 0; i < recipes; ++i)
        rows.push_back(generatedRecipe(i, catalogSizes(recipes)));
    bench.report({"take over a file in the Access format, check and sync the new one (baseline: "
                  "insert the same rows and sync them)",
                  recipes,
                  Unit::Seconds,
                  compare([&] { return insertPlainly(newFile, rows); },
                          [&] { return takeOver(oldFile, newFile); }),
                  {Limit::Kind::Ratio, 1.5}});

    constexpr double mebibyte = 1024 * 1024;
    QFile::remove(newFile);
    bench.report({"memory that taking over a file in the Access format takes at most",
                  recipes,
                  Unit::Bytes,
                  measuredOnce(memoryUse({u"takeover"_s, oldFile, newFile})),
                  {Limit::Kind::Absolute, 64 * mebibyte}});
}
