#include "Bench.h"
#include "PlainSqlite.h"
#include "Sources.h"
#include "data/RecordCursor.h"

#include <algorithm>
#include <stdexcept>

namespace {

qsizetype stepRows(const Source &source, SQLite::Database &plain)
{
    return PlainStatement(plain.getHandle(), source.plainText.toStdString()).run();
}

qsizetype readRows(const Source &source, const std::shared_ptr<Database> &database)
{
    return RecordCursor(database, source.text).RecordCount();
}

// Both sides include preparing the statement. A short statement is repeated for a tenth of a
// second, because other work on the machine would distort a shorter measurement.
Measurement measureSource(const Source &source, SQLite::Database &plain,
                          const std::shared_ptr<Database> &database)
{
    constexpr double minimumSeconds = 0.1;
    if (readRows(source, database) != stepRows(source, plain))
        throw std::runtime_error("the cursor read a different number of rows");
    const double once = secondsOf([&] { stepRows(source, plain); }).value;
    const int times = std::max(1, static_cast<int>(minimumSeconds / once));
    return compare([&] { return secondsPerCall(times, [&](int) { stepRows(source, plain); }); },
                   [&] { return secondsPerCall(times, [&](int) { readRows(source, database); }); });
}

} // namespace

void measureReading(Bench &bench)
{
    for (const int size : bench.largeSizes()) {
        const QString path = bench.database(size);
        SQLite::Database plain = plainConnection(path.toStdString());
        const std::shared_ptr<Database> database = Database::open(path);
        for (const Source &source : windowSources())
            bench.report({std::string("read ") + source.title,
                          size,
                          Unit::Seconds,
                          measureSource(source, plain, database),
                          {Limit::Kind::Ratio, 1.3}});
    }
}
