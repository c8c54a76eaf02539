#include "oldfiles/RowReader.h"

#include <QCoreApplication>

namespace oldfiles {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RowReader)
};

} // namespace

// Calls the function that returns the sentence only for the first problem: a file may have
// millions.
template <typename Sentence>
void RowReader::noteProblem(Sentence sentence)
{
    if (m_firstProblem.isEmpty())
        m_firstProblem = sentence();
}

RowReader::RowReader(const PageFile &file, const TableDefinition &table,
                     std::span<const std::size_t> columns)
    : m_file(file)
    , m_table(table)
    , m_columns(columns.begin(), columns.end())
    , m_decoder(file, table, m_visited)
    , m_values(table.columns.size())
{
    try {
        m_map.emplace(file, table.map);
    } catch (const Damage &) {
        ++m_unreadablePages;
        noteProblem([this] { return mapProblem(); });
    }
}

bool RowReader::next()
{
    for (;;) {
        while (m_row < m_rows.rowCount()) {
            if (readRow(m_row++))
                return true;
        }
        if (!goToNextPage())
            return false;
    }
}

bool RowReader::goTo(RowPlace place)
{
    m_pageNumber = place.page;
    m_row = place.row + 1;
    try {
        m_rows = rowsOf(place.page);
    } catch (const Damage &) {
        m_rows = {};
    }
    return place.row < m_rows.rowCount() && readRow(place.row);
}

// Returns false after the last page and if the callback has stopped the reading.
bool RowReader::goToNextPage()
{
    m_row = 0;
    m_rows = {};
    m_isStopped = m_isStopped || (m_pageCallback && !m_pageCallback());
    if (m_isStopped || !m_map)
        return false;
    try {
        const std::optional<quint32> number = m_map->next();
        if (!number)
            return false;
        m_pageNumber = *number;
    } catch (const Damage &) {
        ++m_unreadablePages;
        noteProblem([this] { return mapProblem(); });
        return true;
    }
    try {
        m_rows = rowsOf(m_pageNumber);
    } catch (const Damage &) {
        ++m_unreadablePages;
        noteProblem([this] {
            return Text::tr("Page %1, which belongs to the table %2, cannot be read.")
                .arg(m_pageNumber)
                .arg(m_table.name);
        });
    }
    return true;
}

// A map may also list pages of long texts and of other kinds, which hold no rows of the table.
DataPage RowReader::rowsOf(quint32 number)
{
    const Bytes page = m_file.page(number, m_page);
    const auto kind = static_cast<PageKind>(page.read<quint8>(0));
    require(kind >= PageKind::Data && kind <= PageKind::UsageMap);
    if (kind != PageKind::Data) {
        require(!isOfRowsButForKind(page));
        return {};
    }
    const DataPage rows(page, m_file.format());
    if (rows.owner() == DataPage::longValueOwner)
        return {};
    require(rows.owner() == m_table.page);
    return rows;
}

// Whether only the first byte tells the page from one with rows of the table. It is damaged then:
// the pages of an index name the table too, but have no directory of rows.
bool RowReader::isOfRowsButForKind(Bytes page) const
{
    std::vector<char> bytes(page.span().begin(), page.span().end());
    bytes[0] = static_cast<char>(PageKind::Data);
    try {
        const DataPage rows(Bytes(bytes), m_file.format());
        for (std::size_t row = 0; row < rows.rowCount(); ++row)
            rows.row(row);
        return rows.rowCount() > 0 && rows.owner() == m_table.page;
    } catch (const Damage &) {
        return false;
    }
}

// Returns whether there is a row at this place that can be read.
bool RowReader::readRow(std::size_t row)
{
    const DataPage::RowState state = m_rows.state(row);
    if (state == DataPage::RowState::Deleted || state == DataPage::RowState::Body)
        return false;
    try {
        Bytes bytes = m_rows.row(row);
        if (state == DataPage::RowState::Moved)
            bytes = movedRow(RowPointer(bytes.read<quint32>(0)));
        const RowLayout layout(bytes, m_file.format());
        for (const std::size_t column : m_columns)
            m_values[column] = m_decoder.decode(layout, column);
        return true;
    } catch (const Damage &) {
        ++m_unreadableRows;
        noteProblem([&] {
            return Text::tr("Row %1 on page %2, which belongs to the table %3, cannot be read.")
                .arg(row)
                .arg(m_pageNumber)
                .arg(m_table.name);
        });
        return false;
    }
}

// A row keeps its place in the order after its body has moved to another page.
Bytes RowReader::movedRow(RowPointer body)
{
    const Bytes bytes = m_file.row(body, m_table.page, DataPage::RowState::Body, m_movedPage);
    m_visited.visit(body);
    return bytes;
}

QString RowReader::mapProblem() const
{
    return Text::tr("The list of the pages of the table %1, which begins on page %2, cannot be "
                    "read completely.")
        .arg(m_table.name)
        .arg(m_table.map.page);
}

} // namespace oldfiles
