#pragma once

#include "platform/UserVisibleError.h"

#include <QCoreApplication>

// What the data layer throws.
class DatabaseError : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};

// The row that was to be changed or deleted no longer exists.
class RowNotFound final : public DatabaseError
{
    Q_DECLARE_TR_FUNCTIONS(RowNotFound)

public:
    RowNotFound()
        : DatabaseError(tr("This entry has been deleted by another program. Nothing was stored."))
    {
    }
};
