#include "PlainConnection.h"
#include "PlainStatement.h"
#include "RecordCursor.h"
#include "Sources.h"
#include "Subjects.h"

#include <stdexcept>

namespace {

// Preparing the statement counts on both sides.
Measurement readingOf(const Source &source, SQLite::Database &plain,
                      const std::shared_ptr<Database> &database)
{
    qsizetype plainRows = 0;
    return inTurns(
        [&] {
            return secondsOf([&] {
                PlainStatement statement(plain.getHandle(), source.plainText.toStdString());
                plainRows = statement.run();
            });
        },
        [&] {
            qsizetype rows = 0;
            const double seconds = secondsOf([&] {
                RecordCursor cursor(database, source.text);
                rows = cursor.RecordCount();
            });
            if (rows != plainRows)
                throw std::runtime_error("the cursor has read other rows");
            return seconds;
        });
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
