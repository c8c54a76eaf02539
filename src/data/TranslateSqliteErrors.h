#pragma once

#include "data/Database.h"

#include <SQLiteCpp/Exception.h>

// Runs an action on the database's connection and throws what goes wrong as a DatabaseError.
template <typename Action>
decltype(auto) translateSqliteErrors(Database &database, Action action)
{
    try {
        return action();
    } catch (const SQLite::Exception &error) {
        database.fail(error.getExtendedErrorCode(), error.what());
    }
}
