#include "Bench.h"
#include "Sources.h"

#include <QProcess>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// Returns by how many bytes the memory of a new process grows.
double memoryGrowth(const QString &how, const QString &database)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(BENCH_ROWMEMORY), {how, database, u"RecipeIngredients"_s});
    bool isNumber = false;
    const double bytes = process.waitForFinished(-1)
        ? process.readAllStandardOutput().trimmed().toDouble(&isNumber)
        : 0;
    if (!isNumber)
        throw std::runtime_error("rowmemory failed");
    return bytes;
}

} // namespace

void measureMemory(Bench &bench)
{
    const QString database = bench.database(bench.largest());
    constexpr double mebibyte = 1024 * 1024;
    printResult({"memory for " + formatNumber(qint64{10} * bench.largest())
                     + " link rows in a cursor (baseline: step through them)",
                 bench.largest(),
                 Unit::Bytes,
                 compare([&] { return memoryGrowth(u"plain"_s, database); },
                         [&] { return memoryGrowth(u"cursor"_s, database); }),
                 {Limit::Kind::Absolute, 40 * mebibyte}});
}
