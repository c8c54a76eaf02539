#include "PlainConnection.h"

#include "data/TextComparison.h"

#include <sqlite3.h>

namespace {

int collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return compareTexts({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                        {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

} // namespace

SQLite::Database plainConnection(const std::string &path)
{
    SQLite::Database database(path, SQLite::OPEN_READWRITE);
    sqlite3_create_collation_v2(database.getHandle(), "NOCASE", SQLITE_UTF8, nullptr, collate,
                                nullptr);
    database.exec("PRAGMA cache_size = -16000");
    return database;
}
