#pragma once

#include "data/RecordCursor.h"

#include <QString>

#include <optional>
#include <vector>

class DataSources;

// One query of a window, with its open cursor. Belongs to a DataSources object, which the window
// declares before its data sources.
class DataSource
{
public:
    explicit DataSource(DataSources &sources);

    QString DatabaseName; // path of the recipe database
    QString RecordSource; // the bare name of a table, or one SELECT statement

    // Does nothing if the source is open. Throws DatabaseError; a later call then tries again.
    void open();

    // Both open the source if it is not open yet: the recipe database may have been repaired since
    // open() threw.
    RecordCursor &Recordset();
    ::Database &Database();

private:
    friend class DataSources;
    Q_DISABLE_COPY_MOVE(DataSource)

    std::shared_ptr<::Database> m_database;
    std::optional<RecordCursor> m_recordset;
};

// All data sources of one window, in the order in which they are declared.
class DataSources
{
public:
    DataSources() = default;

    // To be called by Form_Load, before the sources are opened.
    void setDatabaseName(const QString &path);

    // To be called when Form_Load has returned. Throws DatabaseError and may then be called again.
    void open();

    // Requeries the cursors of all sources. Cursors that are to show one state of the file are
    // requeried and then read inside one ReadTransaction, or inside the Transaction that writes.
    void requery();

    // To be called when the rows are not needed until the next requery, see
    // RecordCursor::suspend(). Opens no source.
    void suspend();

private:
    friend class DataSource; // whose constructor adds it
    Q_DISABLE_COPY_MOVE(DataSources)

    std::vector<DataSource *> m_sources;
};
