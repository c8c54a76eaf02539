#pragma once

#include "data/RecordCursor.h"

#include <QString>

#include <optional>

// One query of a window, with its open cursor.
class DataSource
{
public:
    DataSource() = default;

    QString DatabaseName; // path of the recipe file
    QString RecordSource; // the bare name of a table, or one SELECT statement

    // Called once the window has loaded; throws DatabaseError and may be called again then.
    void open();

    // Both open the source where that has not come about yet, for the file may have been put right.
    RecordCursor &Recordset();
    ::Database &Database();

private:
    Q_DISABLE_COPY_MOVE(DataSource)

    std::shared_ptr<::Database> m_database;
    std::optional<RecordCursor> m_recordset;
};
