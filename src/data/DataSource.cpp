#include "data/DataSource.h"

void DataSource::open()
{
    if (m_recordset)
        return;
    m_database = ::Database::open(DatabaseName);
    m_recordset.emplace(m_database, RecordSource);
}

RecordCursor &DataSource::Recordset()
{
    open();
    return *m_recordset;
}

::Database &DataSource::Database()
{
    open();
    return *m_database;
}
