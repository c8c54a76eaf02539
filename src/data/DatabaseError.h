#pragma once

#include "platform/UserVisibleError.h"

#include <QCoreApplication>

// Thrown by the data layer.
class DatabaseError : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;

    // A failure with the recipe database at `path`, with a text that says what is wrong and what to
    // do. `code` is an extended result code of SQLite and `message` its own text.
    static DatabaseError fromSqlite(const QString &path, int code, const QString &message);

    // The file at `path` has a schema of a later version.
    static DatabaseError newerVersion(const QString &path);
};

// The row to be changed or deleted no longer exists.
class RowNotFound final : public DatabaseError
{
    Q_DECLARE_TR_FUNCTIONS(RowNotFound)

public:
    RowNotFound()
        : DatabaseError(tr("This entry has been deleted by another program. Nothing was stored."))
    {
    }
};
