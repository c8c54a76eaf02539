#pragma once

#include "data/Schema.h"
#include "takeover/CatalogKeys.h"
#include "takeover/RowInsertion.h"
#include "takeover/RowSample.h"
#include "takeover/TakeoverNotes.h"
#include "takeover/TakeoverReport.h"

#include <array>
#include <functional>

namespace SQLite {
class Database;
}

namespace oldfiles {
class RecipeFile;
class RowReader;
}

// Copies the rows of the old file into the tables of a new database, the catalogs first.
class TableCopy
{
public:
    // Called after every few rows; returns false to stop.
    using Step = std::function<bool(qint64 rows)>;

    TableCopy(const oldfiles::RecipeFile &file, SQLite::Database &database, TakeoverNotes &notes);

    // Copies the next table. Returns false if `step` did. Throws SQLite::Exception.
    bool copy(std::size_t table, const Step &step);

    // What copy() has done.
    const TakenTable &taken(std::size_t table) const { return m_taken[table]; }
    const RowSample &sample(std::size_t table) const { return m_samples[table]; }

private:
    Q_DISABLE_COPY_MOVE(TableCopy)

    const oldfiles::RecipeFile &m_file;
    SQLite::Database &m_database;
    TakeoverNotes &m_notes;
    std::array<CatalogKeys, tableCount> m_keys; // empty for the link tables
    std::array<TakenTable, tableCount> m_taken;
    std::array<RowSample, tableCount> m_samples;
};
