#pragma once

#include "oldfiles/PageFile.h"
#include "oldfiles/RowLayout.h"
#include "oldfiles/TableDefinition.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace oldfiles {

// A value of a row: null, a number, yes or no, or a text in UTF-8. A number without a fraction that
// fits is a qint64, whatever the type of its column; a double may be infinite or NaN. A single is
// the double of the shortest decimal number that gives this single.
using Value = std::variant<std::monostate, qint64, double, bool, std::string_view>;

// Decodes the values of a table. Keeps its buffers, so that a value costs no allocation.
class ValueDecoder
{
public:
    // `visited` registers the pieces of long values and must outlive the decoder.
    ValueDecoder(const PageFile &file, const TableDefinition &table, VisitedRows &visited);

    // Returns the value of a column of the layout. A text is valid until the next call for this
    // column. Throws Damage.
    Value decode(const RowLayout &row, std::size_t column);

private:
    std::string_view text(Bytes stored, std::size_t column);
    Bytes longValue(Bytes stored);
    Bytes piece(RowPointer pointer);
    Bytes joinPieces(RowPointer first, std::size_t length);

    const PageFile &m_file;
    const TableDefinition &m_table;
    VisitedRows &m_visited;
    PageBuffer m_page; // of long values
    std::vector<char> m_joined;
    std::vector<char> m_expanded;
    std::vector<std::string> m_texts; // one for each column
};

} // namespace oldfiles
