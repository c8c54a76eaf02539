#include "PlainStatement.h"
#include "RecordCursor.h"
#include "Sources.h"
#include "Subjects.h"

#include <SQLiteCpp/Database.h>

#include <stdexcept>

namespace {

// Both read on the program's own connection, so that the page cache, the comparison of texts and
// the file's state are the same. Preparing the statement counts on both sides.
Measurement readingOf(const Source &source, const std::shared_ptr<Database> &database)
{
    qsizetype plainRows = 0;
    return inTurns(
        [&] {
            return secondsOf([&] {
                PlainStatement statement(database->connection().getHandle(),
                                         source.plainText.toStdString());
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
        const std::shared_ptr<Database> database = Database::open(bench.database(size));
        for (const Source &source : windowSources())
            printResult({std::string("reading: ") + source.title,
                         size,
                         Unit::Seconds,
                         readingOf(source, database),
                         {Bound::Kind::TimesYardstick, 1.3}});
    }
}
