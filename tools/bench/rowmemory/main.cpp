// Prints by how many bytes the resident memory of this process grows when it steps through the rows
// of a table, or when a cursor reads and keeps them:
//   rowmemory plain|cursor DATABASE TABLE
// SQLite's page cache is filled before.

#include "PlainSqlite.h"
#include "data/RecordCursor.h"

#include <SQLiteCpp/Database.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>

namespace {

long residentBytes()
{
    long all = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

long growth(const QString &how, const QString &path, const QString &table)
{
    const std::shared_ptr<Database> database = Database::open(path);
    PlainStatement statement(database->connection().getHandle(),
                             "SELECT * FROM " + table.toStdString());
    RecordCursor cursor(database, table);
    statement.run();
    const long before = residentBytes();
    if (how == QStringLiteral("cursor"))
        cursor.RecordCount();
    else
        statement.run();
    return residentBytes() - before;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4) {
        std::fputs("usage: rowmemory plain|cursor DATABASE TABLE\n", stderr);
        return 2;
    }
    try {
        std::printf("%ld\n",
                    growth(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]),
                           QString::fromLocal8Bit(argv[3])));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "rowmemory: %s\n", error.what());
        return 1;
    }
    return 0;
}
