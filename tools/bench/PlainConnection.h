#pragma once

#include <SQLiteCpp/Database.h>

// A connection as SQLite gives it to anyone, with no more than what the results or the cost of a
// statement depend on set as the program sets it: the comparison of texts and the page cache.
SQLite::Database plainConnection(const std::string &path);
