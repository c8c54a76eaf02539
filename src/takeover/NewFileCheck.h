#pragma once

#include "takeover/TableCopy.h"

#include <functional>

namespace SQLite {
class Database;
}

// Throws platform::UserVisibleError unless the new file is sound, has as many rows as were copied
// and in a sample of them the texts of the old file, which is read again for this. The connection
// must be another one than that which has written. Returns false if `step` did, which is called
// before each row of the sample is read. Lets the exceptions of SQLiteCpp through.
bool checkNewFile(SQLite::Database &connection, const oldfiles::RecipeFile &oldFile,
                  const CopiedTables &copied, const std::function<bool()> &step);
