#pragma once

#include "Bench.h"

#include <memory>

class Database;

// Who writes to a copy of a database. The program and plain SQLite write to different copies: if
// both wrote to one file, each commit would make the other side read pages again, and the program
// its rows, as a commit of another program does.
enum class Writer { Program, PlainSqlite };

// Returns the path of the copy of bench.database(recipes) to which this side may write. It is made
// at the first call; all benchmarks share it.
QString writableDatabase(Bench &bench, int recipes, Writer writer);

// Opens a database and begins a first write, for which the program checks the whole file and makes
// the copy of the day. While the returned connection is held, no other write does that; what the
// first write costs is measured in copying.cpp.
std::shared_ptr<Database> openForWrites(const QString &path);
