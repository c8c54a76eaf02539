#include "PlainConnection.h"
#include "PlainStatement.h"
#include "Sources.h"
#include "Subjects.h"
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

// The time includes preparing the statement on both sides. A source with few rows is read
// repeatedly for a tenth of a second, since a single reading is too short to be measured.
Measurement readingOf(const Source &source, SQLite::Database &plain,
                      const std::shared_ptr<Database> &database)
{
    constexpr double turn = 0.1;
    if (readRows(source, database) != stepRows(source, plain))
        throw std::runtime_error("the cursor has read other rows");
    const double once = secondsOf([&] { stepRows(source, plain); });
    const int times = std::max(1, static_cast<int>(turn / once));
    return inTurns([&] { return secondsOfOne(times, [&](int) { stepRows(source, plain); }); },
                   [&] { return secondsOfOne(times, [&](int) { readRows(source, database); }); });
}

} // namespace

void measureReading(Bench &bench)
{
    for (const int size : bench.sizes()) {
        if (size < 10'000)
            continue;
        const QString path = bench.database(size);
        SQLite::Database plain = plainConnection(path.toStdString());
        const std::shared_ptr<Database> database = Database::open(path);
        for (const Source &source : windowSources())
            printResult({std::string("reading: ") + source.title,
                         size,
                         Unit::Seconds,
                         readingOf(source, plain, database),
                         {Bound::Kind::TimesYardstick, 1.3}});
    }
}
