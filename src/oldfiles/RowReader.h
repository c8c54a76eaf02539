#pragma once

#include "oldfiles/PageFile.h"
#include "oldfiles/PageMap.h"
#include "oldfiles/TableDefinition.h"
#include "oldfiles/ValueDecoder.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace oldfiles {

// Where a row is stored.
struct RowPlace {
    quint32 page = 0;
    std::size_t row = 0; // on the page
};

// Reads the rows of a table in the order in which they are stored, page by page. A row or a page
// that cannot be read is counted and passed over. Made by RecipeFile::rows(); the file and the
// definition must outlive it.
class RowReader
{
public:
    // Decodes the columns whose positions in the layout are given; the others are null.
    RowReader(const PageFile &file, const TableDefinition &table,
              std::span<const std::size_t> columns);

    // Called before each page of rows is read; returns false to stop. Each page takes a bounded
    // time, even if no row of it can be read.
    using PageCallback = std::function<bool()>;
    void setPageCallback(PageCallback callback) { m_pageCallback = std::move(callback); }

    // Goes to the next row that can be read. Returns false after the last one and if the callback
    // has stopped the reading. Never throws Error.
    bool next();

    bool isStopped() const { return m_isStopped; }

    // Goes to the row at this place, which must be one that next() has reached, and returns whether
    // it can be read. next() must not be called after that.
    bool goTo(RowPlace place);

    RowPlace place() const { return {m_pageNumber, m_row - 1}; }

    // The values of the row, one for each column of the layout. Texts are valid until next().
    std::span<const Value> values() const { return m_values; }

    // What has been passed over so far. The rows of an unreadable page are not among the rows.
    qint64 unreadableRows() const { return m_unreadableRows; }
    qint64 unreadablePages() const { return m_unreadablePages; }

    // A sentence that names the table and the page of the first problem; empty without a problem.
    QString firstProblem() const { return m_firstProblem; }

private:
    Q_DISABLE_COPY_MOVE(RowReader)

    bool goToNextPage();
    DataPage rowsOf(quint32 page);
    bool isOfRowsButForKind(Bytes page) const;
    bool readRow(std::size_t row);
    Bytes movedRow(RowPointer body);
    QString mapProblem() const;
    template <typename Sentence>
    void noteProblem(Sentence sentence);

    const PageFile &m_file;
    const TableDefinition &m_table;
    std::vector<std::size_t> m_columns;
    std::optional<PageMap> m_map; // none if it cannot be read
    PageBuffer m_page;
    DataPage m_rows; // of m_page
    PageBuffer m_movedPage;
    VisitedRows m_visited; // the bodies of moved rows and the pieces of long values
    ValueDecoder m_decoder;
    std::vector<Value> m_values;
    quint32 m_pageNumber = 0;
    std::size_t m_row = 0; // the next one
    qint64 m_unreadableRows = 0;
    qint64 m_unreadablePages = 0;
    QString m_firstProblem;
    PageCallback m_pageCallback;
    bool m_isStopped = false;
};

} // namespace oldfiles
