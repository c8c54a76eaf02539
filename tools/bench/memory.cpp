#include "Sources.h"
#include "Subjects.h"

#include <QProcess>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

// The growth of a fresh process in bytes.
double growthOf(const QString &how, const QString &database)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(BENCH_ROWMEMORY), {how, database, u"RecipeIngredients"_s});
    bool isNumber = false;
    const double bytes = process.waitForFinished(-1)
        ? process.readAllStandardOutput().trimmed().toDouble(&isNumber)
        : 0;
    if (!isNumber)
        throw std::runtime_error("rowmemory has failed");
    return bytes;
}

} // namespace

void measureMemory(Bench &bench)
{
    const QString database = bench.database(bench.largest());
    constexpr double mebibyte = 1024 * 1024;
    printResult({"memory of " + grouped(qint64{10} * bench.largest())
                     + " link rows in a cursor; plain is stepping them",
                 bench.largest(),
                 Unit::Bytes,
                 inTurns([&] { return growthOf(u"plain"_s, database); },
                         [&] { return growthOf(u"cursor"_s, database); }),
                 {Bound::Kind::AtMost, 40 * mebibyte}});
}
