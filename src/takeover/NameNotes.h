#pragma once

#include "takeover/TakeoverNotes.h"

namespace SQLite {
class Database;
}

// Notes what is taken over as it is but needs a look: names in the catalogs that are missing or
// that several rows have, letter case aside, and links without a key. The connection must have the
// program's NOCASE. Throws SQLite::Exception.
void noteNamesAndLinks(SQLite::Database &connection, TakeoverNotes &notes);
