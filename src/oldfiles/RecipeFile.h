#pragma once

#include "oldfiles/Error.h"
#include "oldfiles/PageFile.h"
#include "oldfiles/RecipeTables.h"
#include "oldfiles/RowReader.h"
#include "oldfiles/TableDefinition.h"

#include <QStringList>

#include <filesystem>
#include <span>
#include <vector>

namespace oldfiles {

// A recipe file in the Access format: Jet 3 (Access 97), Jet 4 (2000 to 2003) or ACE (since 2007).
// It is opened for reading only, and its pages are read when they are needed. Tables are numbered
// as in recipeTables().
class RecipeFile
{
public:
    // Opens the file and finds the tables. Throws Error if the file is encrypted or damaged, if a
    // table or a column is missing, if a table is linked, or if a column is calculated or of a type
    // that its kind does not allow.
    explicit RecipeFile(const std::filesystem::path &path,
                        std::span<const TableLayout> tables = recipeTables());

    std::size_t tableCount() const { return m_tables.size(); }

    // The number of rows that the table's definition states. A table with fewer rows is damaged.
    // One with more rows is not: the number lags after the program that wrote the file was killed,
    // and may be 0.
    quint32 statedRows(std::size_t table) const { return m_tables[table].statedRows; }

    // The last key that the table's counter has given out; 0 if it has no counter.
    quint32 lastCounter(std::size_t table) const { return m_tables[table].lastCounter; }

    // Counts the rows without decoding a value. If the callback stops, returns the rows so far.
    qint64 storedRows(std::size_t table, RowReader::PageCallback callback = {}) const;

    // What is in the file and is not read, with names as they are spelled there.
    QStringList otherTables() const { return m_otherTables; }
    QStringList otherColumns(std::size_t table) const { return m_tables[table].otherColumns; }

    // A sentence about damage to the list of tables, which otherTables() may then lack some of;
    // empty if it is complete.
    QString catalogProblem() const { return m_catalogProblem; }

    // Returns a reader at the beginning of the table. The second form decodes only the columns
    // whose positions in the layout are given, which is much faster if no long text is among them.
    RowReader rows(std::size_t table) const;
    RowReader rows(std::size_t table, std::span<const std::size_t> columns) const;

private:
    PageFile m_file;
    std::vector<TableDefinition> m_tables;
    QStringList m_otherTables;
    QString m_catalogProblem;
};

} // namespace oldfiles
