#pragma once

#include "data/Schema.h"
#include "takeover/CatalogKeys.h"
#include "takeover/NameNotes.h"
#include "takeover/RowInsertion.h"
#include "takeover/RowNotes.h"
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
} // namespace oldfiles

// What has been copied, by table number.
struct CopiedTables {
    std::array<TakenTable, tableCount> taken;
    std::array<RowSample, tableCount> samples;
    std::array<NameHashes, tableCount> names; // empty for the link tables
};

// Copies the rows of the old file into the tables of a new database, the catalogs first.
class TableCopy
{
public:
    // Called before each page of the old file is read, with the number of rows copied since the
    // last call; returns false to stop.
    using Step = std::function<bool(qint64 rows)>;

    TableCopy(const oldfiles::RecipeFile &file, SQLite::Database &database, CopiedTables &copied,
              TakeoverNotes &notes);

    // Copies the next table. Returns false if `step` did. Throws SQLite::Exception.
    bool copy(std::size_t table, const Step &step);

private:
    Q_DISABLE_COPY_MOVE(TableCopy)

    bool readKeys(std::size_t number, const Step &step);
    qint32 counterOf(std::size_t number) const;
    qint32 copyKey(std::size_t number, const RowNotes::Row &row, RowInsertion &insertion,
                   RowNotes &notes);
    void copyField(const Table &table, const RowNotes::Row &row, std::size_t field,
                   RowInsertion &insertion, RowNotes &notes);
    void noteResult(std::size_t number, const oldfiles::RowReader &rows);
    void noteEmptyLinks(std::size_t number);
    void setCounter(std::size_t number);

    const oldfiles::RecipeFile &m_file;
    SQLite::Database &m_database;
    CopiedTables &m_copied;
    TakeoverNotes &m_notes;
    std::array<qint64, 2> m_emptyLinks{}; // in the first fields of the link table
    std::array<CatalogKeys, tableCount> m_keys; // empty for the link tables
};
