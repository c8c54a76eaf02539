#include "Bench.h"
#include "MemoryUse.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double mebibyte = 1024 * 1024;

Cost bytesUsedFor(const QStringList &arguments)
{
    return {memoryUse(arguments)};
}

void measureRows(Bench &bench)
{
    const QString database = bench.database(bench.largest());
    const QString table = u"RecipeIngredients"_s;
    const qint64 rows = qint64{10} * bench.largest();
    constexpr double limitPerRow = 40 * mebibyte / 1'000'000;
    bench.report({"memory for " + formatNumber(rows)
                      + " link rows in a cursor (baseline: step through them)",
                  bench.largest(),
                  Unit::Bytes,
                  compare(
                      [&] {
                          return bytesUsedFor({u"plain"_s, database, table});
                      },
                      [&] {
                          return bytesUsedFor({u"cursor"_s, database, table});
                      }),
                  {Limit::Kind::Absolute, limitPerRow * static_cast<double>(rows)}});
}

void measureRecipeWindow(Bench &bench, int recipes)
{
    const QString database = bench.database(recipes);
    bench.report({"memory of the process with the recipe window (baseline: the main window alone)",
                  recipes, Unit::Bytes,
                  compare(
                      [&] {
                          return bytesUsedFor({u"frame"_s, database});
                      },
                      [&] {
                          return bytesUsedFor({u"recipe"_s, database});
                      }),
                  absoluteLimit(recipes, {60 * mebibyte, 80 * mebibyte, 250 * mebibyte})});
}

} // namespace

void measureMemory(Bench &bench)
{
    measureRows(bench);
    for (const int size : bench.largeSizes())
        measureRecipeWindow(bench, size);
}
