#pragma once

#include "takeover/TakeoverNotes.h"

namespace SQLite {
class Database;
}

// Notes names in the catalogs that are missing or that several rows have, letter case aside. The
// connection must have the program's NOCASE. Throws SQLite::Exception.
void noteNames(SQLite::Database &connection, TakeoverNotes &notes);
