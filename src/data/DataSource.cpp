#include "data/DataSource.h"

DataSource::DataSource(DataSources &sources)
{
    sources.m_sources.push_back(this);
}

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

void DataSources::setDatabaseName(const QString &path)
{
    for (DataSource *source : m_sources)
        source->DatabaseName = path;
}

void DataSources::open()
{
    for (DataSource *source : m_sources)
        source->open();
}

void DataSources::requery()
{
    for (DataSource *source : m_sources)
        source->Recordset().Requery();
}

void DataSources::suspend()
{
    for (DataSource *source : m_sources) {
        if (source->m_recordset)
            source->m_recordset->suspend();
    }
}
