#pragma once

#include <QString>

namespace SQLite {
class Database;
}

// Throws DatabaseError, with the path and the name of what is wrong, unless the tables of the
// recipe database are such that the program reads and writes them correctly: each field has the
// type and the comparison that creationScript() declares, each catalog numbers its own rows, and no
// index is one that the program would sort in another way than the tool that made it. Fields,
// tables, indexes of numbers and triggers that other tools have added are accepted. Reads no row of
// a table. Lets the exceptions of SQLiteCpp through, which say what is missing.
void checkSchema(SQLite::Database &connection, const QString &path);
